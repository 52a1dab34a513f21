#pragma once

#include <cstdint>
#include <vector>

#include "ocr/glyphs.h"

namespace quillomar {

// A line of text as a recogniser reads it: straightened, enlarged, smoothed, on white.
struct LineImage {
  std::vector<std::uint8_t> grey;  // rows of `width` bytes
  int width = 0, height = 0;
  int scale = 1;          // pixels for each pixel of the picture
  int left = 0, top = 0;  // straightened column and row of the picture at the first pixel

  // Of a box in pixels of this image, the straightened columns and rows of the picture.
  [[nodiscard]] PixelBox ToPicture(const PixelBox& box) const;
};

// Draws the line's ink alone; what the picture holds around it stays away, but for the soft edges
// that touch the ink.
[[nodiscard]] LineImage DrawLine(const EnginePicture& picture, const GlyphLine& line);

}  // namespace quillomar
