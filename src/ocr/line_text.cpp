#include "ocr/line_text.h"

namespace quillomar {

int LineText::GapBefore(std::size_t glyph) const {
  if (glyph == 0) return 0;
  return line.glyphs[glyph].box.x0 - line.glyphs[glyph - 1].box.x1 - 1;
}

double LineText::RelativeGapBefore(std::size_t glyph) const {
  return static_cast<double>(GapBefore(glyph)) / line.metrics.xHeight;
}

}  // namespace quillomar
