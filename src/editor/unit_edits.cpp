#include "editor/unit_edits.h"

#include "base/format.h"
#include "spu/colour_edit.h"
#include "spu/duration.h"
#include "spu/fade.h"
#include "spu/position.h"
#include "spu/run_length.h"
#include "spu/visibility.h"

namespace quillomar {
namespace {

constexpr const char* kAskForStop =
    "This subpic does not have a timed STOP command\n"
    "Therefore it will be displayed forever (or until the next subpic is displayed).\n"
    "To change its duration, do you want to add a STOP command?";

std::vector<int> TypesOf(int which, const SubpictureUnit& unit) {
  if (which < kPixelTypes) return {which};
  std::vector<int> types;
  for (int type = 0; type < kPixelTypes; ++type) {
    const bool background = type == unit.state.statistics.backgroundType;
    if (which == kAlphaAll || !background) types.push_back(type);
  }
  return types;
}

// One unit's edits on their way; each step says what it could not do.
class EditRun {
 public:
  EditRun(SubpictureUnit& unit, const UnitEdits& edits, const Preferences& preferences,
          const SpuContext& context)
      : unit_(unit), edits_(edits), preferences_(preferences), context_(context) {}

  // Empty when everything was done.
  std::string Run() {
    const auto steps = {&EditRun::Move, &EditRun::Border,   &EditRun::Crop, &EditRun::Shift,
                        &EditRun::Fade, &EditRun::Alphas,   &EditRun::Hide, &EditRun::Colours,
                        &EditRun::End,  &EditRun::Duration, &EditRun::Start};
    for (const auto step : steps) {
      std::string refusal = (this->*step)();
      if (lacksSequence_) return Format("it has no DCSQT %d", *edits_.sequence);
      if (!refusal.empty() && !edits_.inBatch) return refusal;
    }
    return {};
  }

 private:
  [[nodiscard]] bool EvenMoves() const { return preferences_.forceEvenMoves != 0; }

  static std::string Say(Result result, const char* text) { return Failed(result) ? text : ""; }

  std::string Move() {
    if (!edits_.moveUp) return {};
    return Say(MoveVertical(unit_, *edits_.moveUp, EvenMoves(), context_), "it cannot be moved");
  }

  std::string Border() {
    if (!edits_.border && !edits_.flush) return {};
    const int border = edits_.border.value_or(unit_.state.border);
    const auto moved = ApplyBorder(unit_, border, {edits_.flush, EvenMoves()}, context_);
    return moved ? "" : "the border cannot be applied";
  }

  std::string Crop() {
    if (!edits_.crop) return {};
    const CropMargins margins{preferences_.cropBorderX, preferences_.cropBorderY};
    return Say(CropBackground(unit_, margins, context_), "its background cannot be cropped");
  }

  std::string Shift() {
    if (!edits_.moveRight) return {};
    return Say(MoveHorizontal(unit_, *edits_.moveRight, context_), "it cannot be moved");
  }

  std::string Fade() {
    if (edits_.fade == FadeEdit::kAdd) {
      return Say(AddFadeIn(unit_, edits_.inBatch, context_), "no fade can be added to it");
    }
    if (edits_.fade == FadeEdit::kRemove) {
      return Say(RemoveFadeIn(unit_, context_), "it has no fade to remove");
    }
    return {};
  }

  std::string Alphas() {
    if (edits_.alphas.empty() || !SelectForLook()) return {};
    for (const TypeValue& alpha : edits_.alphas) {
      if (Failed(SetAlpha(unit_, alpha.value, alpha.which, context_))) {
        return "its transparency cannot be changed";
      }
    }
    return {};
  }

  std::string Hide() { return edits_.hide ? Say(HideUnit(unit_), "it cannot be hidden") : ""; }

  std::string Colours() {
    if (edits_.colours.empty() || !SelectForLook()) return {};
    for (const TypeValue& colour : edits_.colours) {
      const bool several = colour.which >= kPixelTypes;
      if (several && Failed(NeedBitmap(unit_, context_))) return "it has no bitmap";
      for (const int type : TypesOf(colour.which, unit_)) {
        if (Failed(SetColour(unit_, colour.value, type))) return "its colors cannot be changed";
      }
    }
    return {};
  }

  std::string End() {
    if (edits_.end == EndEdit::kAddStop) {
      return Say(AddStopCommand(unit_, context_), "it has a STOP command or no room for one");
    }
    if (edits_.end == EndEdit::kInfinite) {
      return Say(RemoveStopCommand(unit_, context_), "its STOP command cannot be removed");
    }
    return {};
  }

  std::string Duration() {
    if (!edits_.durationMs) return {};
    if (!HasTimedStop(unit_)) {
      const bool may = !edits_.inBatch && context_.reporter.AskYesNo(kAskForStop);
      if (!may) return "it has no STOP command";
      if (Failed(AddStopCommand(unit_, context_))) return "it has no room for a STOP command";
    }
    return Say(SetDelay(unit_, kLastSequence, *edits_.durationMs, context_),
               "its duration cannot be changed");
  }

  std::string Start() {
    if (!edits_.forcedStart) return {};
    return Say(SetForcedStart(unit_, *edits_.forcedStart), "it has no start command");
  }

  // Steps before may have added sequences: only now can it be told whether this one exists.
  bool SelectForLook() {
    const int sequence = edits_.sequence.value_or(0);
    lacksSequence_ = edits_.sequence && sequence >= static_cast<int>(unit_.state.sequences.size());
    if (lacksSequence_) return false;
    unit_.allSequences = !edits_.sequence.has_value();
    (void)SelectControlSequence(unit_, sequence);
    return true;
  }

  static constexpr int kLastSequence = -1;

  SubpictureUnit& unit_;
  const UnitEdits& edits_;
  const Preferences& preferences_;
  const SpuContext& context_;
  bool lacksSequence_ = false;
};

}  // namespace

bool UnitEdits::Empty() const {
  const bool look = colours.empty() && alphas.empty() && !hide && fade == FadeEdit::kNone;
  const bool place = !moveUp && !moveRight && !border && !flush && !crop;
  return look && place && end == EndEdit::kNone && !durationMs && !forcedStart;
}

const char* NameOf(const UnitEdits& edits) {
  if (edits.moveUp || edits.moveRight) return "move";
  if (edits.border) return "border";
  if (edits.flush) return "flush to border";
  if (edits.crop) return "crop";
  if (edits.fade != FadeEdit::kNone) return edits.fade == FadeEdit::kAdd ? "fade" : "no fade";
  if (!edits.alphas.empty()) return "transparency";
  if (edits.hide) return "hide";
  if (!edits.colours.empty()) return "color";
  return edits.forcedStart ? "start command" : "duration";
}

Result ApplyEdits(SubpictureUnit& unit, const UnitEdits& edits, const Preferences& preferences,
                  const SpuContext& context, std::string& refusal) {
  const SpuState before = unit.state;
  const int boxes = unit.charBoxCount;
  const int shown = unit.currentSequence;
  const bool all = unit.allSequences;
  refusal = EditRun(unit, edits, preferences, context).Run();
  if (!refusal.empty()) {
    unit.state = before;
    unit.charBoxCount = boxes;
    unit.ReleasePixels();
  }
  unit.allSequences = all;
  const bool stays = shown < static_cast<int>(unit.state.sequences.size());
  (void)SelectControlSequence(unit, stays ? shown : 0);
  return refusal.empty() ? Result::kDone : Result::kFailed;
}

}  // namespace quillomar
