#include "editor/edit_history.h"

#include <algorithm>
#include <utility>

#include "base/format.h"
#include "spu/colour_edit.h"

namespace quillomar {
namespace {

// Decoding a bitmap fills in much of a state and is no edit.
bool SameEdit(const SpuState& a, const SpuState& b) {
  return a.bytes == b.bytes && a.pts == b.pts && a.modified == b.modified && a.border == b.border &&
         a.horizontalOffset == b.horizontalOffset && a.verticalOffset == b.verticalOffset &&
         a.hiddenRows == b.hiddenRows;
}

UnitText TextOf(const SubpictureUnit& unit) {
  return {unit.ocrText, unit.savedOcrText, unit.charBoxes, unit.charBoxCount, unit.textRoles};
}

// A text that the action left alone may be of a later reading.
void ExchangeText(SubpictureUnit& unit, std::optional<UnitText>& other) {
  if (!other) {
    unit.MarkBoxesStale();
    return;
  }
  std::swap(unit.ocrText, other->lines);
  std::swap(unit.savedOcrText, other->savedLines);
  std::swap(unit.charBoxes, other->boxes);
  std::swap(unit.charBoxCount, other->boxCount);
  std::swap(unit.textRoles, other->roles);
}

std::size_t HeldBytes(const UnitText& text) {
  std::size_t bytes = text.boxes.capacity() * sizeof(CharBox);
  for (const auto* const lines : {&text.lines, &text.savedLines}) {
    for (const std::string& line : *lines) bytes += sizeof(std::string) + line.capacity();
  }
  return bytes;
}

std::size_t HeldBytes(const SpuState& state) {
  std::size_t bytes = sizeof(EditStep::UnitChange) + state.bytes.capacity() +
                      state.sequences.capacity() * sizeof(ControlSequence) +
                      state.colconTables.capacity() * sizeof(ColconTable) +
                      state.bandsAsFound.capacity() * sizeof(BandPlace);
  for (const ControlSequence& sequence : state.sequences) {
    bytes += sequence.commands.capacity() * sizeof(SpuCommand);
  }
  for (const ColconTable& table : state.colconTables) {
    for (const ColconBand& band : table.bands) {
      bytes += sizeof(ColconBand) + band.columns.capacity() * sizeof(ColconColumn);
    }
  }
  return bytes;
}

std::size_t HeldBytes(const EditStep& step) {
  std::size_t bytes = sizeof(EditStep) + step.cluts.capacity() * sizeof(EditStep::ClutChange);
  for (const EditStep::UnitChange& change : step.units) {
    bytes += HeldBytes(change.other);
    if (change.otherText) bytes += HeldBytes(*change.otherText);
  }
  return bytes;
}

}  // namespace

std::string EditStep::Label() const {
  const std::size_t count = units.size();
  if (count == 1) return Format("%s (subpic %d)", name.c_str(), units.front().unit->number);
  return count == 0 ? name : Format("%s (%d subpics)", name.c_str(), static_cast<int>(count));
}

void EditHistory::Begin(std::string name, const LastModifications& last) {
  Close();
  const bool goesOn =
      held_ && holdHasStep_ && done_ == steps_.size() && done_ > 0 && steps_.back().name == name;
  if (goesOn) {
    open_ = std::move(steps_.back());
    steps_.pop_back();
    --done_;
    bytes_ -= open_->bytes;
    for (const EditStep::UnitChange& change : open_->units) inOpen_.insert(change.unit.get());
  } else {
    open_ = EditStep{std::move(name), last, {}, {}, 0};
  }
}

void EditHistory::BeginHold() {
  held_ = true;
  holdHasStep_ = false;
}

SubpictureUnit& EditHistory::Open(const UnitPointer& unit) {
  OwnedUnit owned = std::const_pointer_cast<SubpictureUnit>(unit);
  SubpictureUnit& opened = *owned;
  if (!open_) Begin("edit", {});
  if (tooLarge_ || !inOpen_.insert(&opened).second) return opened;
  open_->bytes += HeldBytes(opened.state);
  open_->units.push_back({std::move(owned), opened.state, TextOf(opened)});
  tooLarge_ = open_->bytes > mostBytes_;
  if (tooLarge_) std::vector<EditStep::UnitChange>().swap(open_->units);
  return opened;
}

ClutRecord& EditHistory::OpenClut(int index) {
  ClutRecord& clut = cells_.cluts.at(static_cast<std::size_t>(index));
  if (!open_) Begin("edit", {});
  const auto same = [index](const EditStep::ClutChange& change) { return change.clut == index; };
  if (std::none_of(open_->cluts.begin(), open_->cluts.end(), same)) {
    open_->cluts.push_back({index, clut.entries});
  }
  return clut;
}

void EditHistory::Close() {
  if (!open_) return;
  EditStep step = *std::exchange(open_, std::nullopt);
  inOpen_.clear();
  if (tooLarge_) {
    // What came before can't be reached without this step.
    Clear();
    return;
  }
  DropUnchanged(step);
  if (step.units.empty() && step.cluts.empty()) return;
  ForgetRedo();
  Push(std::move(step));
}

void EditHistory::DropUnchanged(EditStep& step) const {
  for (EditStep::UnitChange& change : step.units) {
    if (change.otherText == TextOf(*change.unit)) change.otherText.reset();
  }
  std::erase_if(step.units, [](const EditStep::UnitChange& change) {
    return !change.otherText && SameEdit(change.other, change.unit->state);
  });
  std::erase_if(step.cluts, [this](const EditStep::ClutChange& change) {
    return change.other == cells_.cluts.at(static_cast<std::size_t>(change.clut)).entries;
  });
}

void EditHistory::Push(EditStep step) {
  step.bytes = HeldBytes(step);
  bytes_ += step.bytes;
  steps_.push_back(std::move(step));
  holdHasStep_ = held_;
  while (bytes_ > mostBytes_) {
    bytes_ -= steps_.front().bytes;
    steps_.pop_front();
  }
  done_ = steps_.size();
}

void EditHistory::ForgetRedo() {
  while (steps_.size() > done_) {
    bytes_ -= steps_.back().bytes;
    steps_.pop_back();
  }
}

void EditHistory::Clear() {
  open_.reset();
  inOpen_.clear();
  steps_.clear();
  done_ = 0;
  bytes_ = 0;
  tooLarge_ = false;
  held_ = false;
}

const EditStep* EditHistory::ToUndo() const {
  return done_ == 0 ? nullptr : &steps_[done_ - 1];
}

const EditStep* EditHistory::ToRedo() const {
  return done_ == steps_.size() ? nullptr : &steps_[done_];
}

const EditStep* EditHistory::Undo(LastModifications& last) {
  Close();
  held_ = false;
  if (done_ == 0) return nullptr;
  --done_;
  Exchange(steps_[done_], last);
  return &steps_[done_];
}

const EditStep* EditHistory::Redo(LastModifications& last) {
  Close();
  held_ = false;
  if (done_ == steps_.size()) return nullptr;
  ++done_;
  Exchange(steps_[done_ - 1], last);
  return &steps_[done_ - 1];
}

void EditHistory::Exchange(EditStep& step, LastModifications& last) {
  for (EditStep::UnitChange& change : step.units) {
    SubpictureUnit& unit = *change.unit;
    std::swap(unit.state, change.other);
    ExchangeText(unit, change.otherText);
    unit.ReleasePixels();
    const bool stays = unit.currentSequence < static_cast<int>(unit.state.sequences.size());
    (void)SelectControlSequence(unit, stays ? unit.currentSequence : 0);
  }
  for (EditStep::ClutChange& change : step.cluts) {
    std::swap(cells_.cluts.at(static_cast<std::size_t>(change.clut)).entries, change.other);
  }
  std::swap(last, step.last);
  // The two sides need not be of one size.
  bytes_ -= step.bytes;
  step.bytes = HeldBytes(step);
  bytes_ += step.bytes;
}

}  // namespace quillomar
