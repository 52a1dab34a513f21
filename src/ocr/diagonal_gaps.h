#pragma once

#include <cstdint>
#include <span>

namespace quillomar {

// Closes the steps of diagonal strokes: a pixel of a third type that parts two text pixels which
// touch at a corner becomes `replacement` or, with one of 255 or more, text. `pixels` holds
// `height` rows of `width` types; types are at most 5.
void FillDiagonalGaps(std::span<std::uint8_t> pixels, int width, int height, int textType,
                      int excludedType, int replacement);

}  // namespace quillomar
