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
constexpr double kExtraGlyph = 0.5;
constexpr double kExpectedGlyph = 0.05;
// Parts of a broken letter lie close together: what a wider gap costs, and from where on,
// x-heights. What may be a full stop lies closer to its neighbours than words do.
constexpr double kGapWeight = 12;
constexpr double kFreeGap = 0.25, kFreeGapOfMark = 0.08;
// Parts together are no wider than the letter; a little and what more costs.
constexpr double kJoinedWidth = 1.15, kJoinedWidthWeight = 1.5;
// What speaks for a known glyph and against one that is read otherwise.
constexpr double kAsKnown = -0.3, kNotAsKnown = 0.6, kJoinsKnown = 0.8, kSkipKnown = 1;
constexpr double kPlaceWeight = 0.5, kMostForPlace = 3;
constexpr double kWidthWeight = 0.8, kMostForWidth = 1.2;
// Several readings of one glyph must be as wide as it is.
constexpr double kTouchingWidthWeight = 1.4, kMostForTouchingWidth = 2.5;
constexpr double kBrokenMark = 3;     // a dot or a dash that would have two parts
constexpr double kWrongKind = 1.0;    // a mark for a letter
constexpr double kWrongPlace = 0.8;   // a mark at another height
constexpr double kWrongHeight = 0.6;  // a small letter for a tall one
constexpr double kWrongDescender = 0.3;
constexpr double kDescent = 0.15;  // x-heights below the baseline

double ShapeCost(const CharacterShape& shape, const GlyphPlace& place) {
  using Place = CharacterShape::Place;
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
  Aligner(const std::vector<Reading>& readings, const std::vector<Glyph>& glyphs,
          const LineMetrics& metrics, const CharacterWidths& widths,
          const std::vector<std::u32string>& known)
      : readings_(readings), glyphs_(glyphs), metrics_(metrics), known_(known) {
    for (const Reading& reading : readings)
      expected_.push_back({ShapeOf(reading.ch), widths.WidthOf(reading.ch)});
  }

  std::vector<Match> Run() {
    const std::size_t rows = glyphs_.size() + 1, columns = readings_.size() + 1;
    columns_ = columns;
    cells_.assign(rows * columns, {});
    cells_[0].cost = 0;
    for (std::size_t glyph = 0; glyph < rows; ++glyph) {
      for (std::size_t reading = 0; reading < columns; ++reading) Extend(glyph, reading);
    }
    return Trace(rows - 1, columns - 1);
  }

 private:
  struct Expected {
    CharacterShape shape;
    double width = 0;  // of the disc's, x-heights
  };
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
    if (glyph + glyphs > glyphs_.size() || reading + readings > readings_.size()) return;
    const double before = At(glyph, reading).cost;
    const double cost = glyphs == 0     ? kSkip
                        : readings == 0 ? SkipCost(glyph)
                                        : Cost(glyph, glyphs, reading, readings) +
                                              KnownCost(glyph, glyphs, reading, readings);
    Cell& target = At(glyph + glyphs, reading + readings);
    if (before + cost < target.cost) target = {before + cost, glyphs, readings};
  }

  [[nodiscard]] double Cost(std::size_t glyph, std::size_t glyphs, std::size_t reading,
                            std::size_t readings) const {
    PixelBox ink, seen;
    for (std::size_t i = 0; i < glyphs; ++i) ink.Join(glyphs_[glyph + i].box);
    double width = 0;
    for (std::size_t i = 0; i < readings; ++i) {
      seen.Join(readings_[reading + i].box);
      width += expected_[reading + i].width;
    }
    const double unit = metrics_.xHeight;
    const double shift = (ink.x0 + ink.x1 - seen.x0 - seen.x1) / 2.0 / unit;
    const GlyphPlace place = PlaceOf(ink, metrics_);
    double cost = std::min(kPlaceWeight * shift * shift, kMostForPlace) +
                  WidthCost(std::abs(place.width - width), readings > 1);
    if (readings == 1)
      cost += ShapeCost(expected_[reading].shape, place) +
              GlyphsCost(glyph, glyphs, expected_[reading]);
    return cost + kExtraReading * static_cast<double>(readings - 1);
  }
  // Ink that is known needs no reading.
  [[nodiscard]] double SkipCost(std::size_t glyph) const {
    return known_[glyph].empty() ? kSkip : kSkipKnown;
  }
  [[nodiscard]] double KnownCost(std::size_t glyph, std::size_t glyphs, std::size_t reading,
                                 std::size_t readings) const {
    if (glyphs > 1) {
      const auto begin = known_.begin() + static_cast<std::ptrdiff_t>(glyph);
      return kJoinsKnown * static_cast<double>(std::count_if(
                               begin, begin + static_cast<std::ptrdiff_t>(glyphs),
                               [](const std::u32string& text) { return !text.empty(); }));
    }
    const std::u32string& text = known_[glyph];
    if (text.empty()) return 0;
    bool same = text.size() == readings;
    for (std::size_t i = 0; same && i < readings; ++i) same = readings_[reading + i].ch == text[i];
    return same ? kAsKnown : kNotAsKnown;
  }
  static double WidthCost(double misfit, bool several) {
    if (several) return std::min(kTouchingWidthWeight * misfit, kMostForTouchingWidth);
    return std::min(kWidthWeight * misfit, kMostForWidth);
  }
  [[nodiscard]] double GlyphsCost(std::size_t glyph, std::size_t glyphs,
                                  const Expected& character) const {
    const auto expected = static_cast<std::size_t>(character.shape.parts);
    const bool mark = character.shape.place != CharacterShape::Place::kLetter;
    double cost = mark && glyphs > expected ? kBrokenMark : 0;
    for (std::size_t i = 1; i < glyphs; ++i) {
      cost += i < expected ? kExpectedGlyph : kExtraGlyph + GapCost(glyph + i);
    }
    if (glyphs > expected) {
      const double width =
          static_cast<double>(glyphs_[glyph + glyphs - 1].box.x1 - glyphs_[glyph].box.x0 + 1) /
          metrics_.xHeight;
      cost += kJoinedWidthWeight * std::max(width - kJoinedWidth * character.width, 0.0);
    }
    return cost;
  }

  // For taking a glyph and the one before it for parts of a letter.
  [[nodiscard]] double GapCost(std::size_t glyph) const {
    const PixelBox &left = glyphs_[glyph - 1].box, &right = glyphs_[glyph].box;
    const bool mark = PlaceOf(left, metrics_).IsLowMark() || PlaceOf(right, metrics_).IsLowMark();
    const double gap = static_cast<double>(right.x0 - left.x1 - 1) / metrics_.xHeight;
    return kGapWeight * std::max(gap - (mark ? kFreeGapOfMark : kFreeGap), 0.0);
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
  const std::vector<Glyph>& glyphs_;
  LineMetrics metrics_;
  const std::vector<std::u32string>& known_;
  std::vector<Expected> expected_;  // of each reading
  std::vector<Cell> cells_;
  std::size_t columns_ = 0;
};

}  // namespace

std::vector<Match> AlignReadings(const std::vector<Reading>& readings,
                                 const std::vector<Glyph>& glyphs, const LineMetrics& metrics,
                                 const CharacterWidths& widths,
                                 const std::vector<std::u32string>& known) {
  return Aligner(readings, glyphs, metrics, widths, known).Run();
}

}  // namespace quillomar
