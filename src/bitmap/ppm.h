#pragma once

#include <optional>

#include "bitmap/type_colours.h"

// Portable pixmap: "P6\n", width and height in decimal, "\n255\n", then red, green and blue of each
// pixel, the top row first.
namespace quillomar {

// How many pixels of the bitmap one pixel of the file stands for, across and down.
struct PpmScale {
  double x = 1.0;
  double y = 1.0;
};

// `pixels` are types, rows of `width` from the top. Nothing for a scale that is not above zero, or
// at which the picture has no pixel or more than 8192 in a row or column.
[[nodiscard]] std::optional<Bytes> MakePpm(ByteSpan pixels, int width, const TypeColours& colours,
                                           PpmScale scale);

}  // namespace quillomar
