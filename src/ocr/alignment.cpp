#include "ocr/alignment.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillomar {
namespace {

constexpr std::size_t kMostGlyphs = 3;    // for one reading
constexpr std::size_t kMostReadings = 5;  // for one glyph
constexpr double kSkip = 1.5;
constexpr double kExtraReading = 0.7;
constexpr double kExtraGlyph = 0.8;
constexpr double kExpectedGlyph = 0.05;
// Parts of a broken letter lie close together: what a wider gap costs, and from where on,
// x-heights.
constexpr double kGapWeight = 5;
constexpr double kFreeGap = 0.12;
constexpr double kPlaceWeight = 0.5, kMostForPlace = 3;
constexpr double kWidthWeight = 0.8, kMostForWidth = 1.2;
constexpr double kWrongKind = 1.0;    // a mark for a letter
constexpr double kWrongPlace = 0.8;   // a mark at another height
constexpr double kWrongHeight = 0.6;  // a small letter for a tall one
constexpr double kWrongDescender = 0.3;
constexpr double kDescent = 0.15;  // x-heights below the baseline

double ShapeCost(char32_t ch, const GlyphPlace& place) {
  using Place = CharacterShape::Place;
  const CharacterShape shape = ShapeOf(ch);
  const bool isMark = place.IsLowMark() || place.IsHighMark();
  switch (shape.place) {
    case Place::kLowMark:
      return place.IsLowMark() ? 0 : isMark ? kWrongPlace : kWrongKind;
    case Place::kHighMark:
      return place.IsHighMark() ? 0 : isMark ? kWrongPlace : kWrongKind;
    case Place::kMiddleMark:
      return place.IsTall() || place.drop > kDescent ? kWrongKind : 0;
    case Place::kLetter:
      break;
  }
  if (isMark) return kWrongKind;
  double cost = 0;
  if ((shape.tall && !place.IsTall()) || (shape.small && place.IsTall())) cost += kWrongHeight;
  if (!shape.descends && place.drop > 2 * kDescent) cost += kWrongDescender;
  return cost;
}

class Aligner {
 public:
  Aligner(const std::vector<Reading>& readings, const GlyphLine& line,
          const CharacterWidths& widths)
      : readings_(readings), line_(line), widths_(widths) {}

  std::vector<Match> Run() {
    const std::size_t rows = line_.glyphs.size() + 1, columns = readings_.size() + 1;
    columns_ = columns;
    cells_.assign(rows * columns, {});
    cells_[0].cost = 0;
    for (std::size_t glyph = 0; glyph < rows; ++glyph) {
      for (std::size_t reading = 0; reading < columns; ++reading) Extend(glyph, reading);
    }
    return Trace(rows - 1, columns - 1);
  }

 private:
  struct Cell {
    double cost = std::numeric_limits<double>::infinity();
    std::size_t glyphs = 0, readings = 0;  // of the last step
  };

  Cell& At(std::size_t glyph, std::size_t reading) { return cells_[glyph * columns_ + reading]; }

  void Extend(std::size_t glyph, std::size_t reading) {
    Step(glyph, reading, 1, 0);
    Step(glyph, reading, 0, 1);
    for (std::size_t count = 1; count <= kMostGlyphs; ++count) Step(glyph, reading, count, 1);
    for (std::size_t count = 2; count <= kMostReadings; ++count) Step(glyph, reading, 1, count);
  }
  void Step(std::size_t glyph, std::size_t reading, std::size_t glyphs, std::size_t readings) {
    if (glyph + glyphs > line_.glyphs.size() || reading + readings > readings_.size()) return;
    const double before = At(glyph, reading).cost;
    const double cost =
        glyphs == 0 || readings == 0 ? kSkip : Cost(glyph, glyphs, reading, readings);
    Cell& target = At(glyph + glyphs, reading + readings);
    if (before + cost < target.cost) target = {before + cost, glyphs, readings};
  }

  [[nodiscard]] double Cost(std::size_t glyph, std::size_t glyphs, std::size_t reading,
                            std::size_t readings) const {
    PixelBox ink, seen;
    for (std::size_t i = 0; i < glyphs; ++i) ink.Join(line_.glyphs[glyph + i].box);
    double width = 0;
    for (std::size_t i = 0; i < readings; ++i) {
      seen.Join(readings_[reading + i].box);
      width += widths_.WidthOf(readings_[reading + i].ch);
    }
    const double unit = line_.metrics.xHeight;
    const double shift = (ink.x0 + ink.x1 - seen.x0 - seen.x1) / 2.0 / unit;
    const GlyphPlace place = PlaceOf(ink, line_.metrics);
    double cost = std::min(kPlaceWeight * shift * shift, kMostForPlace) +
                  std::min(kWidthWeight * std::abs(place.width - width), kMostForWidth);
    if (readings == 1)
      cost += ShapeCost(readings_[reading].ch, place) +
              GlyphsCost(glyph, glyphs, readings_[reading].ch);
    return cost + kExtraReading * static_cast<double>(readings - 1);
  }
  [[nodiscard]] double GlyphsCost(std::size_t glyph, std::size_t glyphs, char32_t ch) const {
    const auto expected = static_cast<std::size_t>(ShapeOf(ch).parts);
    double cost = 0;
    for (std::size_t i = 1; i < glyphs; ++i) {
      const int columns = line_.glyphs[glyph + i].box.x0 - line_.glyphs[glyph + i - 1].box.x1 - 1;
      const double gap = static_cast<double>(columns) / line_.metrics.xHeight;
      cost +=
          i < expected ? kExpectedGlyph : kExtraGlyph + kGapWeight * std::max(gap - kFreeGap, 0.0);
    }
    return cost;
  }

  std::vector<Match> Trace(std::size_t glyph, std::size_t reading) {
    std::vector<Match> matches;
    while (glyph > 0 || reading > 0) {
      const Cell& cell = At(glyph, reading);
      glyph -= cell.glyphs;
      reading -= cell.readings;
      if (cell.glyphs > 0) matches.push_back({glyph, cell.glyphs, reading, cell.readings});
    }
    std::reverse(matches.begin(), matches.end());
    return matches;
  }

  const std::vector<Reading>& readings_;
  const GlyphLine& line_;
  const CharacterWidths& widths_;
  std::vector<Cell> cells_;
  std::size_t columns_ = 0;
};

}  // namespace

std::vector<Match> AlignReadings(const std::vector<Reading>& readings, const GlyphLine& line,
                                 const CharacterWidths& widths) {
  return Aligner(readings, line, widths).Run();
}

}  // namespace quillomar
