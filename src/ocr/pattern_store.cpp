#include "ocr/pattern_store.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace quillomar {
namespace {

constexpr int kWordBits = 64;
// Pixels by which two renderings may differ: so many, or this share of the ink, in the whole and in
// each band of rows. What parts "e" from "c" or "ö" from "ô" is not hidden by the size of the rest.
constexpr int kFewPixels = 2;
constexpr double kShareOfInk = 0.09;
constexpr int kBandRows = 5;
constexpr int kFewInBand = 2;
constexpr double kShareOfBand = 0.15;
// A stroke between the pixels moves its edges, which makes no longer run of differences in a row.
constexpr int kLongestRun = 3;
constexpr int kLeastDepthDifference = 2;

using Row = std::vector<std::uint64_t>;

std::size_t Index(int number) {
  return static_cast<std::size_t>(number);
}

// A row of the pattern, moved to the right by `shift` (0 or 1) and widened to `words`.
void ReadRow(const GlyphPattern& pattern, int row, int shift, Row& out) {
  std::fill(out.begin(), out.end(), 0);
  std::uint64_t carry = 0;
  for (int i = 0; i < pattern.wordsInRow; ++i) {
    const std::uint64_t word = pattern.bits[Index(row) * Index(pattern.wordsInRow) + Index(i)];
    out[static_cast<std::size_t>(i)] = word << static_cast<unsigned>(shift) | carry;
    carry = shift == 0 ? 0 : word >> 63U;
  }
  if (static_cast<std::size_t>(pattern.wordsInRow) < out.size()) {
    out[static_cast<std::size_t>(pattern.wordsInRow)] = carry;
  }
}

int CountBits(const Row& row) {
  int count = 0;
  for (const std::uint64_t word : row) count += std::popcount(word);
  return count;
}

bool HasLongRun(const Row& row) {
  return std::any_of(row.begin(), row.end(), [](std::uint64_t word) {
    for (int i = 0; i < kLongestRun; ++i) word &= word << 1U;
    return word != 0;
  });
}

bool HasBlock(const Row& above, const Row& below) {
  for (std::size_t i = 0; i < above.size(); ++i) {
    const std::uint64_t both = above[i] & below[i];
    if ((both & both << 1U) != 0) return true;
  }
  return false;
}

int MostDiffering(const GlyphPattern& a, const GlyphPattern& b) {
  return std::max(kFewPixels, static_cast<int>(kShareOfInk * std::max(a.pixels, b.pixels)));
}

// Pixels that differ when `a` is moved by `shiftA` and `b` by `shiftB`; nothing when they cannot be
// the same glyph.
class Comparison {
 public:
  Comparison(const GlyphPattern& a, int shiftA, const GlyphPattern& b, int shiftB)
      : a_(a), b_(b), shiftA_(shiftA), shiftB_(shiftB) {
    const auto words = static_cast<std::size_t>(std::max(a.wordsInRow, b.wordsInRow)) + 1;
    for (Row* row : {&rowA_, &rowB_, &difference_, &previous_}) row->resize(words);
  }
  std::optional<int> Run() {
    const int most = MostDiffering(a_, b_);
    int differing = 0;
    for (int row = 0; row < a_.height; ++row) {
      differing += CompareRow(row);
      if (differing > most || bad_) return {};
    }
    return differing;
  }

 private:
  int CompareRow(int row) {
    ReadRow(a_, row, shiftA_, rowA_);
    ReadRow(b_, row, shiftB_, rowB_);
    std::swap(previous_, difference_);
    for (std::size_t i = 0; i < rowA_.size(); ++i) difference_[i] = rowA_[i] ^ rowB_[i];
    const int count = CountBits(difference_);
    bad_ = bad_ || HasLongRun(difference_) || HasBlock(previous_, difference_);
    bandDiffering_ += count;
    bandInk_ += CountBits(rowA_);
    if (row % kBandRows == kBandRows - 1 || row + 1 == a_.height) EndBand();
    return count;
  }
  void EndBand() {
    bad_ = bad_ || bandDiffering_ > std::max(kFewInBand, static_cast<int>(kShareOfBand * bandInk_));
    bandDiffering_ = bandInk_ = 0;
  }

  const GlyphPattern& a_;
  const GlyphPattern& b_;
  int shiftA_, shiftB_;
  Row rowA_, rowB_, difference_, previous_;
  int bandDiffering_ = 0, bandInk_ = 0;
  bool bad_ = false;
};

std::optional<int> Least(std::optional<int> a, std::optional<int> b) {
  if (!a || !b) return a ? a : b;
  return std::min(*a, *b);
}

std::optional<int> Difference(const GlyphPattern& a, const GlyphPattern& b) {
  const int depth = std::max(kLeastDepthDifference, std::min(a.xHeight, b.xHeight) / 6);
  if (a.height != b.height || std::abs(a.width - b.width) > 1) return {};
  if (std::abs(a.depth - b.depth) > depth) return {};
  if (std::abs(a.pixels - b.pixels) > MostDiffering(a, b)) return {};
  std::optional<int> least = Comparison(a, 0, b, 0).Run();
  if (a.width < b.width) least = Least(least, Comparison(a, 1, b, 0).Run());
  if (a.width > b.width) least = Least(least, Comparison(a, 0, b, 1).Run());
  return least;
}

}  // namespace

bool GlyphPattern::Has(int x, int y) const {
  const std::uint64_t word = bits[Index(y) * Index(wordsInRow) + Index(x / kWordBits)];
  return (word >> static_cast<unsigned>(x % kWordBits) & 1U) != 0;
}

void GlyphPattern::Set(int x, int y) {
  if (Has(x, y)) return;
  std::uint64_t& word = bits[Index(y) * Index(wordsInRow) + Index(x / kWordBits)];
  word |= std::uint64_t{1} << static_cast<unsigned>(x % kWordBits);
  ++pixels;
}

GlyphPattern PatternOf(const Glyph& glyph, const LineMetrics& metrics) {
  const PixelBox box = glyph.UnshearedBox();
  GlyphPattern pattern;
  pattern.width = box.Width();
  pattern.height = box.Height();
  pattern.wordsInRow = (pattern.width + kWordBits - 1) / kWordBits;
  pattern.bits.resize(Index(pattern.wordsInRow) * Index(pattern.height));
  pattern.depth = box.y1 - metrics.baseline;
  pattern.xHeight = metrics.xHeight;
  for (const Component& component : glyph.components) {
    for (const InkRun& run : component.runs) {
      for (int x = run.first; x <= run.last; ++x) pattern.Set(x - box.x0, run.row - box.y0);
    }
  }
  return pattern;
}

bool AreAlike(const GlyphPattern& a, const GlyphPattern& b) {
  return Difference(a, b).has_value();
}

void Votes::Add(const std::u32string& text, double weight) {
  weights_[text] += weight;
  sum_ += weight;
  ++count_;
}

std::u32string Votes::Best() const {
  const auto best =
      std::max_element(weights_.begin(), weights_.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  return best == weights_.end() ? std::u32string() : best->first;
}

double Votes::ShareOf(const std::u32string& text) const {
  const auto found = weights_.find(text);
  return found == weights_.end() || sum_ <= 0 ? 0 : found->second / sum_;
}

std::optional<std::size_t> PatternStore::Find(const GlyphPattern& pattern) const {
  std::optional<std::size_t> best;
  int least = 0;
  for (int width = pattern.width - 1; width <= pattern.width + 1; ++width) {
    const auto bucket = bySize_.find({pattern.height, width});
    if (bucket == bySize_.end()) continue;
    for (const std::size_t id : bucket->second) {
      const std::optional<int> difference = Difference(entries_[id].pattern, pattern);
      if (!difference || (best && *difference >= least)) continue;
      best = id;
      least = *difference;
    }
  }
  return best;
}

std::size_t PatternStore::FindOrAdd(const GlyphPattern& pattern) {
  if (const auto found = Find(pattern)) return *found;
  entries_.push_back({pattern, {}});
  bySize_[{pattern.height, pattern.width}].push_back(entries_.size() - 1);
  return entries_.size() - 1;
}

}  // namespace quillomar
