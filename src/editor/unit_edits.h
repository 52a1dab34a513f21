#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/preferences.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// A value for a pixel type (0 to 3) or several, as SetAlpha takes them.
struct TypeValue {
  int which = 0;
  int value = 0;  // CLUT index or alpha, 0 to 15
};

enum class FadeEdit { kNone, kAdd, kRemove };
enum class EndEdit { kNone, kAddStop, kInfinite };

// What is to be done to a unit, or to many alike.
struct UnitEdits {
  std::optional<int> moveUp = {};     // lines above the area as found
  std::optional<int> moveRight = {};  // pixels right of the area as found
  std::optional<int> border = {};     // lines
  bool flush = false;                 // to the nearest border
  bool crop = false;                  // the background
  FadeEdit fade = FadeEdit::kNone;
  std::vector<TypeValue> colours = {};
  std::vector<TypeValue> alphas = {};
  std::optional<int> sequence = {};  // of colours and alphas; nothing: all
  bool hide = false;
  EndEdit end = EndEdit::kNone;
  std::optional<int> durationMs = {};
  std::optional<bool> forcedStart = {};
  // One of many units that are edited alike: an edit that the unit refuses is passed over, and
  // nothing is asked.
  bool inBatch = false;

  [[nodiscard]] bool Empty() const;
};

// What the user calls them, by the first of them in the order below.
[[nodiscard]] const char* NameOf(const UnitEdits& edits);

// Carries the edits out in the order: vertical move, borders, crop, horizontal move, fade, alphas,
// hide, colours, end and duration, start. A unit that lacks the sequence asked for is left wholly
// alone, and so is, outside a batch, one that refuses an edit: its state is then what it was.
// `refusal` says why where no message has.
Result ApplyEdits(SubpictureUnit& unit, const UnitEdits& edits, const Preferences& preferences,
                  const SpuContext& context, std::string& refusal);

}  // namespace quillomar
