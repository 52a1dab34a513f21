#pragma once

#include <cstdint>
#include <vector>

#include "editor/unit_edits.h"

namespace quillomar {

// Value of a field that no edit has set.
inline constexpr std::int32_t kNeverSet = -123454321;

// The edits last made to a current unit, each kind overwriting its own field. What was never set
// since the files were opened can't be applied to other units.
struct LastModifications {
  std::int32_t verticalPosition = kNeverSet;    // lines above the area as found
  std::int32_t horizontalPosition = kNeverSet;  // pixels right of it
  std::int32_t borderHeight = 0;                // lines
  bool borderChanged = false;                   // tells a border of 0 from none set
  bool flushToBorder = false;                   // how borders are set, now and again
  std::int32_t startCommand = kNeverSet;        // 0 normal, else forced
  std::int32_t duration = kNeverSet;            // ms
  std::int32_t fade = kNeverSet;                // 1 added, -1 removed
  std::vector<TypeValue> transparency;          // in the order of the edits, each selection once
  std::vector<TypeValue> colour;
  bool allControlSequences = false;  // of the last change of transparency or colour; else:
  int controlSequence = 0;
  bool cropped = false;
  bool hidden = false;
};

// Takes up edits that were made to a unit.
void Remember(LastModifications& last, const UnitEdits& edits, const SubpictureUnit& unit);

enum class DurationMode {
  kSet = 0,       // every duration
  kLengthen = 1,  // shorter ones only
  kShorten = 2,   // longer ones only; one without an end stays
};

// Which of the last modifications to apply.
struct ApplyAllChoices {
  bool verticalPosition = false;
  bool horizontalPosition = false;
  bool startCommand = false;
  bool transparency = false;
  bool borders = false;
  bool flushToBorder = false;  // with the borders
  bool colour = false;
  bool durations = false;
  int durationMs = 0;
  DurationMode durationMode = DurationMode::kSet;
  bool crop = false;
  bool fade = false;
  bool hide = false;

  // Cropping and nothing else.
  [[nodiscard]] bool CropAlone() const;
};

// Everything that has been set: what may be chosen at all.
[[nodiscard]] ApplyAllChoices ChoicesOf(const LastModifications& last);

// Applies what was chosen to a unit. What the unit refuses is passed over and nothing is asked, but
// a unit that lacks the control sequence of a look change is left wholly alone: kFailed.
Result ApplyModifications(SubpictureUnit& unit, const LastModifications& last,
                          const ApplyAllChoices& choices, const Preferences& preferences,
                          const SpuContext& context);

}  // namespace quillomar
