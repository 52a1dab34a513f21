#pragma once

#include "spu/subpicture_unit.h"

namespace quillomar {

// The rows of a unit's bitmap that are shown where it stands now: a move can hide rows at the top,
// the frame's end those below it. Looks into unit.pixels.
struct ShownBitmap {
  int x = 0, y = 0;  // place on the frame: pixels, lines
  int width = 0, height = 0;
  ByteSpan pixels;  // a type for each pixel, row 0 on top
};

// The unit's bitmap must be decoded.
[[nodiscard]] ShownBitmap FindShownBitmap(const SubpictureUnit& unit);

}  // namespace quillomar
