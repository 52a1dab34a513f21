// Walking the list and changing the current unit.

#include <algorithm>

#include "base/format.h"
#include "editor/editor.h"
#include "editor/view_builder.h"
#include "spu/colour_edit.h"

namespace quillomar {
namespace {

constexpr std::array<const char*, kPixelTypes> kColourTitles = {
    "Pick color for background pixel",
    "Pick color for text pixel. ",
    "Pick color for anti-alias pixel 1",
    "Pick color for anti-alias pixel 2",
};

}  // namespace

void Editor::GoTo(int index) {
  if (jobChangesUnits_) return;
  if (!selection_.SetIndex(index)) return;
  video_.Leave();
  UpdateView();
}

void Editor::GoPrevious() {
  GoTo(selection_.Index() - 1);
}
void Editor::GoNext() {
  GoTo(selection_.Index() + 1);
}
void Editor::GoFirst() {
  GoTo(0);
}
void Editor::GoLast() {
  GoTo(selection_.Count() - 1);
}

void Editor::ChooseStream(int entry) {
  if (entry < 0 || entry > document_.HighestStream() + 1) return;
  selection_.filter.stream = entry == 0 ? std::nullopt : std::optional<int>(entry - 1);
  RefillList();
  video_.FollowStream();
}

void Editor::ChooseVcid(int entry) {
  const std::vector<Vcid> vcids = document_.Vcids();
  if (entry < 0 || entry > static_cast<int>(vcids.size())) return;
  selection_.filter.vcid =
      entry == 0 ? std::nullopt : std::optional<Vcid>(vcids[static_cast<std::size_t>(entry) - 1]);
  RefillList();
}

void Editor::StepStream(int direction) {
  ChooseStream(view_.stream + direction);
}
void Editor::StepVcid(int direction) {
  ChooseVcid(view_.vcid + direction);
}

void Editor::SetModifiedOnly(bool on) {
  selection_.filter.modifiedOnly = on;
  RefillList();
}

void Editor::SetForcedOnly(bool on) {
  selection_.filter.forcedOnly = on;
  RefillList();
}

void Editor::ChooseSequence(int entry) {
  if (jobChangesUnits_) return;
  const UnitPointer unit = selection_.Current();
  if (!unit || entry < 0 || entry > static_cast<int>(unit->state.sequences.size())) return;
  SubpictureUnit& shown = Document::Unrecorded(unit);
  shown.allSequences = entry == 0;
  (void)SelectControlSequence(shown, std::max(entry - 1, 0));
  UpdateView();
}

void Editor::ToggleOnlyType(int pixelType) {
  look_.onlyType = look_.onlyType == pixelType ? std::nullopt : std::optional<int>(pixelType);
  UpdateView();
}

bool Editor::UnitMayBeEdited() {
  return !busy_ && selection_.Current() != nullptr;
}

std::optional<int> Editor::EditedSequence() const {
  const UnitPointer unit = selection_.Current();
  return !unit || unit->allSequences ? std::nullopt : std::optional(unit->currentSequence);
}

void Editor::SetColour(int pixelType, int clutEntry) {
  UnitEdits edits;
  edits.colours = {{pixelType, clutEntry}};
  edits.sequence = EditedSequence();
  EditCurrent(edits);
}

void Editor::SetTransparency(int alpha, int which) {
  UnitEdits edits;
  edits.alphas = {{which, alpha}};
  edits.sequence = EditedSequence();
  EditCurrent(edits);
}

void Editor::EditClutEntry(int pixelType) {
  if (!UnitMayBeEdited() || pixelType < 0 || pixelType >= kPixelTypes) return;
  const auto type = static_cast<std::size_t>(pixelType);
  const UnitPointer unit = selection_.Current();
  const ClutRecord* const clut = ClutOfUnit(document_, *unit);
  const std::optional<int> entry = view_.swatches[type].clutEntry;
  if (clut == nullptr || !entry) return;
  const auto index = static_cast<std::size_t>(*entry);
  const Rgb shown = ToRgb(clut->entries.at(index));
  const auto chosen = frontEnd_.ChooseColour(kColourTitles[type], shown);
  // What looks the same is not converted: the disc's own value may have no exact way back.
  if (!chosen || *chosen == shown) return;
  document_.History().Begin(Format("CLUT entry %d", *entry), last_);
  document_.History().OpenClut(*unit->clut).entries.at(index) = ToYCrCb(*chosen);
  UpdateView();
}

}  // namespace quillomar
