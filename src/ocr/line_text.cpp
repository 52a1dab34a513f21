#include "ocr/line_text.h"

namespace quillomar {

void LineText::JoinGlyphs(std::size_t first, std::size_t count) {
  auto& glyphs = line.glyphs;
  for (std::size_t i = 1; i < count; ++i) {
    joined.push_back({PatternOf(glyphs[first + i - 1], line.metrics),
                      PatternOf(glyphs[first + i], line.metrics)});
  }
  for (std::size_t i = 1; i < count; ++i) glyphs[first].Join(std::move(glyphs[first + i]));
  const auto begin = glyphs.begin() + static_cast<std::ptrdiff_t>(first) + 1;
  glyphs.erase(begin, begin + static_cast<std::ptrdiff_t>(count - 1));
}

int LineText::GapBefore(std::size_t glyph) const {
  if (glyph == 0) return 0;
  return line.glyphs[glyph].box.x0 - line.glyphs[glyph - 1].box.x1 - 1;
}

double LineText::RelativeGapBefore(std::size_t glyph) const {
  return static_cast<double>(GapBefore(glyph)) / line.metrics.xHeight;
}

}  // namespace quillomar
