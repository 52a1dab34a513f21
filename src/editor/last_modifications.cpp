#include "editor/last_modifications.h"

#include <limits>

#include "spu/colour_edit.h"
#include "spu/parse.h"

namespace quillomar {
namespace {

constexpr std::int32_t kFadeAdded = 1;
constexpr std::int32_t kFadeRemoved = -1;
constexpr std::int32_t kFadeRemovedToo = -2;

// A change takes the place of the one with the same selection of pixel types; all types take the
// place of everything.
void Take(std::vector<TypeValue>& changes, const TypeValue& change) {
  std::erase_if(changes, [&](const TypeValue& earlier) {
    return change.which == kAlphaAll || earlier.which == change.which;
  });
  changes.push_back(change);
}

void RememberLook(LastModifications& last, const UnitEdits& edits) {
  for (const TypeValue& change : edits.alphas) Take(last.transparency, change);
  for (const TypeValue& change : edits.colours) Take(last.colour, change);
  if (!edits.alphas.empty() || !edits.colours.empty()) {
    last.allControlSequences = !edits.sequence.has_value();
    last.controlSequence = edits.sequence.value_or(0);
  }
  if (edits.hide) last.hidden = true;
  if (edits.fade == FadeEdit::kAdd) last.fade = kFadeAdded;
  if (edits.fade == FadeEdit::kRemove) last.fade = kFadeRemoved;
}

FadeEdit FadeOf(std::int32_t fade) {
  if (fade == kFadeAdded) return FadeEdit::kAdd;
  return fade == kFadeRemoved || fade == kFadeRemovedToo ? FadeEdit::kRemove : FadeEdit::kNone;
}

bool DurationApplies(const ApplyAllChoices& choices, int currentMs) {
  // One without an end lasts longer than any.
  const int current = currentMs < 0 ? std::numeric_limits<int>::max() : currentMs;
  if (choices.durationMode == DurationMode::kLengthen) return current < choices.durationMs;
  if (choices.durationMode == DurationMode::kShorten) return current > choices.durationMs;
  return true;
}

void AddPlace(const LastModifications& last, const ApplyAllChoices& choices, UnitEdits& edits) {
  if (choices.verticalPosition) edits.moveUp = last.verticalPosition;
  if (choices.horizontalPosition) edits.moveRight = last.horizontalPosition;
  if (choices.borders) {
    edits.border = last.borderHeight;
    edits.flush = choices.flushToBorder && last.borderHeight > 0;
  }
  edits.crop = choices.crop;
}

void AddLook(const LastModifications& last, const ApplyAllChoices& choices, UnitEdits& edits) {
  if (choices.fade) edits.fade = FadeOf(last.fade);
  if (choices.transparency) edits.alphas = last.transparency;
  if (choices.colour) edits.colours = last.colour;
  if (!last.allControlSequences) edits.sequence = last.controlSequence;
  edits.hide = choices.hide;
}

}  // namespace

void Remember(LastModifications& last, const UnitEdits& edits, const SubpictureUnit& unit) {
  if (edits.moveUp) last.verticalPosition = *edits.moveUp;
  if (edits.moveRight) last.horizontalPosition = *edits.moveRight;
  if (edits.border || edits.flush) {
    last.borderHeight = edits.border.value_or(unit.state.border);
    last.borderChanged = true;
  }
  if (edits.crop) last.cropped = true;
  if (edits.durationMs) last.duration = *edits.durationMs;
  if (edits.forcedStart) last.startCommand = *edits.forcedStart ? 1 : 0;
  RememberLook(last, edits);
}

bool ApplyAllChoices::CropAlone() const {
  return crop && !(verticalPosition || horizontalPosition || startCommand || transparency ||
                   borders || colour || durations || fade || hide);
}

ApplyAllChoices ChoicesOf(const LastModifications& last) {
  ApplyAllChoices choices;
  choices.verticalPosition = last.verticalPosition != kNeverSet;
  choices.horizontalPosition = last.horizontalPosition != kNeverSet;
  choices.startCommand = last.startCommand != kNeverSet;
  choices.transparency = !last.transparency.empty();
  choices.borders = last.borderChanged;
  choices.flushToBorder = last.flushToBorder;
  choices.colour = !last.colour.empty();
  choices.durations = last.duration != kNeverSet;
  if (choices.durations) choices.durationMs = last.duration;
  choices.crop = last.cropped;
  choices.fade = last.fade != kNeverSet;
  choices.hide = last.hidden;
  return choices;
}

Result ApplyModifications(SubpictureUnit& unit, const LastModifications& last,
                          const ApplyAllChoices& choices, const Preferences& preferences,
                          const SpuContext& context) {
  UnitEdits edits;
  AddPlace(last, choices, edits);
  AddLook(last, choices, edits);
  const int duration = DurationMs(unit, context.standard);
  if (choices.durations && DurationApplies(choices, duration))
    edits.durationMs = choices.durationMs;
  if (choices.startCommand) edits.forcedStart = last.startCommand != 0;
  edits.inBatch = true;
  std::string refusal;
  return ApplyEdits(unit, edits, preferences, context, refusal);
}

}  // namespace quillomar
