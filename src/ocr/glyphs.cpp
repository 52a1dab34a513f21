#include "ocr/glyphs.h"

#include <algorithm>
#include <map>

#include "spu/char_box.h"

namespace quillomar {
namespace {

constexpr double kLetterShare = 0.5;  // of the typical height: lower components are marks
// Two components are one glyph when this share of the narrower's columns is common to both ...
constexpr double kCommonColumns = 0.5;
// ... but not when they stand side by side: more rows and fewer columns in common than these.
constexpr double kSideRows = 0.5;
constexpr double kSideColumns = 0.8;
// A mark is lower than this, in x-heights.
constexpr double kMark = 0.5;
// Two strokes of a quotation mark, in x-heights.
constexpr double kQuoteHeight = 0.75;
constexpr double kQuoteGap = 0.42;
// x-height as a share of the height of capitals.
constexpr double kLeastXShare = 0.6;
constexpr double kMostXShare = 0.88;
constexpr double kUsualXShare = 0.73;
// In short lines descenders and brackets may outnumber the letters that stand on the baseline: they
// reach so far below it, in typical heights. Little ends above it.
constexpr double kShallowest = 0.15, kDeepest = 0.5;
constexpr double kShareAboveDescenders = 0.45;
// Lines whose letters are this much off the disc's have another size.
constexpr double kOtherSize = 1.9;

std::vector<const Component*> Letters(const InkLine& line) {
  std::vector<const Component*> letters;
  for (const Component& component : line.components) {
    if (component.box.Height() >= kLetterShare * line.typicalHeight) letters.push_back(&component);
  }
  if (!letters.empty()) return letters;
  for (const Component& component : line.components) letters.push_back(&component);
  return letters;
}

int CountNear(const std::vector<int>& counts, int place) {
  int sum = 0;
  for (int i = place - 1; i <= place + 1; ++i) {
    if (i >= 0 && i < static_cast<int>(counts.size())) sum += counts[static_cast<std::size_t>(i)];
  }
  return sum +
         (place < static_cast<int>(counts.size()) ? counts[static_cast<std::size_t>(place)] : 0);
}

int Fullest(const std::vector<int>& counts, int from, int to) {
  int best = from;
  for (int i = from; i <= to; ++i) {
    if (CountNear(counts, i) > CountNear(counts, best)) best = i;
  }
  return best;
}

// The x-height in a histogram of heights above the baseline; 0 when it is empty.
int XHeightIn(const std::vector<int>& counts) {
  const int top = static_cast<int>(counts.size()) - 1;
  if (top < 1) return 0;
  const int fullest = Fullest(counts, 1, top);
  const int low = Fullest(counts, std::max(static_cast<int>(fullest * kLeastXShare), 1),
                          static_cast<int>(fullest * kMostXShare));
  // Most letters are small; where a peak stands above that of the small ones, it is that of the
  // tall ones.
  if (CountNear(counts, low) * 5 >= CountNear(counts, fullest) && low < fullest) return low;
  const int high = Fullest(counts, std::min(static_cast<int>(fullest / kMostXShare), top),
                           std::min(static_cast<int>(fullest / kLeastXShare), top));
  if (CountNear(counts, high) * 12 >= CountNear(counts, fullest)) return fullest;
  return static_cast<int>(fullest * kUsualXShare);
}

// Whether enough letters, small and tall, show that x-height.
bool IsWellShown(const std::vector<int>& counts, int xHeight) {
  constexpr int kLeastSmall = 8;
  constexpr int kLeastTall = 4;
  const int top = static_cast<int>(counts.size()) - 1;
  const int tall = Fullest(counts, std::min(static_cast<int>(xHeight / kMostXShare), top),
                           std::min(static_cast<int>(xHeight / kLeastXShare), top));
  return CountNear(counts, xHeight) >= kLeastSmall && CountNear(counts, tall) >= kLeastTall &&
         tall > xHeight + 1;
}

void Count(std::vector<int>& counts, int value) {
  if (value < 1) return;
  counts.resize(std::max(counts.size(), static_cast<std::size_t>(value) + 1));
  ++counts[static_cast<std::size_t>(value)];
}

void CountHeights(const InkLine& line, int baseline, std::vector<int>& counts) {
  for (const Component* letter : Letters(line)) {
    if (std::abs(letter->box.y1 - baseline) <= 1) Count(counts, baseline - letter->box.y0 + 1);
  }
}

class GlyphJoiner {
 public:
  explicit GlyphJoiner(const LineMetrics& metrics) : metrics_(metrics) {}

  [[nodiscard]] std::vector<Glyph> Join(std::vector<Glyph> parts) const {
    std::sort(parts.begin(), parts.end(), [](const Glyph& a, const Glyph& b) {
      return a.box.x0 != b.box.x0 ? a.box.x0 < b.box.x0 : a.box.y0 < b.box.y0;
    });
    std::vector<Glyph> glyphs;
    for (Glyph& part : parts) {
      const auto partner = std::find_if(glyphs.rbegin(), glyphs.rend(),
                                        [&](const Glyph& glyph) { return AreOne(glyph, part); });
      if (partner == glyphs.rend()) {
        glyphs.push_back(std::move(part));
      } else {
        partner->Join(std::move(part));
      }
    }
    return JoinQuotes(std::move(glyphs));
  }

 private:
  [[nodiscard]] double XHeights(double count) const { return count * metrics_.xHeight; }
  [[nodiscard]] bool IsMark(const Glyph& glyph) const {
    return glyph.box.Height() < XHeights(kMark) && glyph.box.Width() < XHeights(kMark);
  }

  [[nodiscard]] bool AreOne(const Glyph& a, const Glyph& b) const {
    const int narrower = std::min(a.box.Width(), b.box.Width());
    const int common = OverlapX(a.box, b.box);
    if (common == 0 || common < kCommonColumns * narrower) return false;
    const int lower = std::min(a.box.Height(), b.box.Height());
    const int rows = OverlapY(a.box, b.box);
    if (rows > kSideRows * lower && common < kSideColumns * narrower) return false;
    return !AreQuoteOverComma(a, b);
  }
  [[nodiscard]] bool AreQuoteOverComma(const Glyph& a, const Glyph& b) const {
    const Glyph& upper = a.box.y0 < b.box.y0 ? a : b;
    const Glyph& lower = a.box.y0 < b.box.y0 ? b : a;
    const int middle = metrics_.baseline - metrics_.xHeight;
    return upper.box.Height() < XHeights(kQuoteHeight) &&
           lower.box.Height() < XHeights(kQuoteHeight) && upper.box.y0 < middle &&
           lower.box.y1 >= metrics_.baseline - 1 && lower.box.y0 - upper.box.y1 > XHeights(0.2) &&
           IsMark(lower);
  }

  // The two strokes of a quotation mark stand side by side.
  [[nodiscard]] std::vector<Glyph> JoinQuotes(std::vector<Glyph> glyphs) const {
    std::vector<Glyph> joined;
    bool second = false;
    for (Glyph& glyph : glyphs) {
      if (!joined.empty() && !second && AreQuote(joined.back(), glyph)) {
        joined.back().Join(std::move(glyph));
        second = true;
      } else {
        joined.push_back(std::move(glyph));
        second = false;
      }
    }
    return joined;
  }
  [[nodiscard]] bool AreQuote(const Glyph& a, const Glyph& b) const {
    const auto isStroke = [this](const Glyph& glyph) {
      return glyph.box.y1 < metrics_.baseline - XHeights(0.4) &&
             glyph.box.Height() < XHeights(kQuoteHeight) &&
             glyph.box.y0 < metrics_.baseline - XHeights(1.05) && glyph.box.Width() < XHeights(0.4);
    };
    return isStroke(a) && isStroke(b) && std::abs(a.box.y0 - b.box.y0) <= 1 &&
           std::abs(a.box.y1 - b.box.y1) <= 1 && b.box.x0 - a.box.x1 <= XHeights(kQuoteGap);
  }

  LineMetrics metrics_;
};

}  // namespace

PixelBox Glyph::UnshearedBox() const {
  PixelBox all;
  for (const Component& component : components) all.Join(component.box);
  return all;
}

void Glyph::Join(Glyph other) {
  box.Join(other.box);
  pixels += other.pixels;
  std::move(other.components.begin(), other.components.end(), std::back_inserter(components));
}

Glyph JoinedGlyph(const std::vector<Glyph>& glyphs, std::size_t first, std::size_t count) {
  Glyph joined = glyphs[first];
  for (std::size_t i = 1; i < count; ++i) joined.Join(glyphs[first + i]);
  return joined;
}

int FindBaseline(const InkLine& line) {
  std::vector<int> counts(static_cast<std::size_t>(line.box.Height()) + 1);
  for (const Component* letter : Letters(line)) {
    ++counts[static_cast<std::size_t>(letter->box.y1 - line.box.y0)];
  }
  const int fullest = Fullest(counts, 0, line.box.Height());
  const int high = fullest - static_cast<int>(kDeepest * line.typicalHeight);
  const int low = fullest - std::max(static_cast<int>(kShallowest * line.typicalHeight), 2);
  if (high < 0 || low <= high) return line.box.y0 + fullest;
  const int above = Fullest(counts, high, low);
  const bool isBaseline =
      CountNear(counts, above) >= kShareAboveDescenders * CountNear(counts, fullest);
  return line.box.y0 + (isBaseline ? above : fullest);
}

void HeightStatistics::Add(const InkLine& line, int baseline) {
  CountHeights(line, baseline, counts_);
}

int HeightStatistics::XHeightOf(const InkLine& line, int baseline) const {
  std::vector<int> counts;
  CountHeights(line, baseline, counts);
  const int own = XHeightIn(counts);
  const int common = XHeightIn(counts_);
  if (common == 0) return std::max(own, 1);
  const bool farOff = own > 0 && (own > kOtherSize * common || common > kOtherSize * own);
  // A disc may hold type of several sizes.
  const bool other = farOff || (std::abs(own - common) > 1 && IsWellShown(counts, own));
  return std::max(other ? own : common, 1);
}

PixelBox Straightened(const Component& component, int refRow, float slant) {
  PixelBox box;
  for (const InkRun& run : component.runs) {
    const int shift = SlantShift(run.row, refRow, slant);
    box.Join({run.first + shift, run.last + shift, run.row, run.row});
  }
  return box;
}

GlyphLine FindGlyphs(const InkLine& line, const LineMetrics& metrics, float slant) {
  std::vector<Glyph> parts;
  for (const Component& component : line.components) {
    parts.push_back(
        {Straightened(component, metrics.baseline, slant), {component}, component.pixels});
  }
  return {slant, metrics, GlyphJoiner(metrics).Join(std::move(parts))};
}

}  // namespace quillomar
