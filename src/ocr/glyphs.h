#pragma once

#include <vector>

#include "ocr/line_split.h"

namespace quillomar {

// Ink that is read as one: a letter with its marks, or letters that touch.
struct Glyph {
  PixelBox box;  // columns of the straightened line
  std::vector<Component> components;
  int pixels = 0;

  [[nodiscard]] PixelBox UnshearedBox() const;
  void Join(Glyph other);
};

// Rows of a line that its letters stand between.
struct LineMetrics {
  int baseline = 0;  // last row of letters that stand on it
  int xHeight = 1;   // rows of a small letter
};

// Parts that a user may take for one glyph.
inline constexpr std::size_t kMostTaughtParts = 3;
// Some neighbours as one glyph.
[[nodiscard]] Glyph JoinedGlyph(const std::vector<Glyph>& glyphs, std::size_t first,
                                std::size_t count);

struct GlyphLine {
  float slant = 0;
  LineMetrics metrics;        // the baseline is the reference row of the slant
  std::vector<Glyph> glyphs;  // from the left
};

// Row on which most of the letters stand.
[[nodiscard]] int FindBaseline(const InkLine& line);

// Heights of letters, collected over a disc, tell its x-height.
class HeightStatistics {
 public:
  void Add(const InkLine& line, int baseline);
  // Of lines like this one: the disc's, or what the line's own letters suggest when they are of
  // another size.
  [[nodiscard]] int XHeightOf(const InkLine& line, int baseline) const;

 private:
  std::vector<int> counts_;
};

// Straightens the line about its baseline and joins the components that make one glyph.
[[nodiscard]] GlyphLine FindGlyphs(const InkLine& line, const LineMetrics& metrics, float slant);

// Column extent of a component on the straightened line.
[[nodiscard]] PixelBox Straightened(const Component& component, int refRow, float slant);

}  // namespace quillomar
