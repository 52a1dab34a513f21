#include "ocr/glyph_cutter.h"

#include <algorithm>
#include <cmath>

#include "spu/char_box.h"

namespace quillomar {
namespace {

constexpr double kPullToExpected = 0.6;  // pixels of ink that a column further away is worth

class Cutter {
 public:
  Cutter(const Glyph& glyph, const GlyphLine& line) : glyph_(glyph), line_(line) {
    profile_.resize(static_cast<std::size_t>(glyph.box.Width()));
    for (const Component& component : glyph.components) {
      for (const InkRun& run : component.runs) {
        const int shift = SlantShift(run.row, line.metrics.baseline, line.slant);
        for (int x = run.first + shift; x <= run.last + shift; ++x) {
          ++profile_[static_cast<std::size_t>(x - glyph.box.x0)];
        }
      }
    }
  }

  // The first column of the part to the right of a cut near `expected`.
  [[nodiscard]] int CutNear(double expected, int from, int to) const {
    int best = std::clamp(static_cast<int>(std::lround(expected)), from, to);
    double least = 1e9;
    for (int column = from; column <= to; ++column) {
      const double cost =
          std::min(Ink(column - 1), Ink(column)) + kPullToExpected * std::abs(column - expected);
      if (cost < least) {
        least = cost;
        best = column;
      }
    }
    return best;
  }
  // The box of the ink in some columns.
  [[nodiscard]] PixelBox InkIn(int first, int last) const {
    PixelBox box;
    for (const Component& component : glyph_.components) {
      for (const InkRun& run : component.runs) {
        const int shift = SlantShift(run.row, line_.metrics.baseline, line_.slant);
        const int left = std::max(run.first + shift, first);
        const int right = std::min(run.last + shift, last);
        if (left <= right) box.Join({left, right, run.row, run.row});
      }
    }
    return box.Width() > 0 ? box : PixelBox{first, last, glyph_.box.y0, glyph_.box.y1};
  }

 private:
  [[nodiscard]] int Ink(int column) const {
    const int place = column - glyph_.box.x0;
    if (place < 0 || place >= static_cast<int>(profile_.size())) return 0;
    return profile_[static_cast<std::size_t>(place)];
  }

  const Glyph& glyph_;
  const GlyphLine& line_;
  std::vector<int> profile_;  // ink of each column
};

}  // namespace

std::vector<PixelBox> CutGlyph(const Glyph& glyph, const std::u32string& text,
                               const GlyphLine& line, const CharacterWidths& widths) {
  if (text.size() <= 1) return {glyph.box};
  double sum = 0;
  for (const char32_t ch : text) sum += widths.WidthOf(ch);
  const Cutter cutter(glyph, line);
  std::vector<PixelBox> boxes;
  double done = 0;
  int first = glyph.box.x0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    done += widths.WidthOf(text[i]);
    int next = glyph.box.x1 + 1;
    if (i + 1 < text.size() && first < glyph.box.x1) {
      next = cutter.CutNear(glyph.box.x0 + glyph.box.Width() * done / sum, first + 1, glyph.box.x1);
    }
    boxes.push_back(cutter.InkIn(std::min(first, glyph.box.x1), next - 1));
    first = next;
  }
  return boxes;
}

}  // namespace quillomar
