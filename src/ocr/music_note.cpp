#include "ocr/music_note.h"

#include <algorithm>
#include <vector>

#include "spu/char_box.h"

namespace quillomar {
namespace {

constexpr double kLeastHeight = 0.85;  // x-heights
constexpr int kLeastWidth = 4;         // columns
// Shares of the height: the stem is looked at between the first two, the flag ends above the third,
// the head fills what is below it.
constexpr double kStemTop = 0.15, kStemBottom = 0.55, kHeadTop = 0.78;
// Shares of the width.
constexpr double kThinStem = 0.3, kFlagReach = 0.2, kHeadReach = 0.2;
constexpr int kStemDrift = 2;       // columns
constexpr double kHeadFill = 0.55;  // of the head's box

class NoteShape {
 public:
  NoteShape(const Glyph& glyph, int refRow, float slant) {
    for (const InkRun& run : glyph.components.front().runs) {
      const int shift = SlantShift(run.row, refRow, slant);
      const InkRun moved{run.row, run.first + shift, run.last + shift};
      box_.Join({moved.first, moved.last, moved.row, moved.row});
      rows_.resize(static_cast<std::size_t>(box_.Height()));
      rows_[static_cast<std::size_t>(run.row - box_.y0)].push_back(moved);
    }
  }

  bool IsNote() { return FindStem() && HasHead() && HasFlag(); }

 private:
  [[nodiscard]] int RowAt(double share) const { return static_cast<int>(share * box_.Height()); }
  [[nodiscard]] const std::vector<InkRun>& Row(int row) const {
    return rows_[static_cast<std::size_t>(row)];
  }
  [[nodiscard]] int AtLeastTwo(double share) const {
    return std::max(2, static_cast<int>(share * box_.Width()));
  }

  // What stands furthest to the left above the head, straight and thin.
  bool FindStem() {
    std::vector<int> starts, lengths;
    for (int row = RowAt(kStemTop); row <= RowAt(kStemBottom); ++row) {
      if (Row(row).empty() || Row(row).size() > 2) return false;
      starts.push_back(Row(row).front().first);
      lengths.push_back(Row(row).front().Length());
    }
    const auto [left, right] = std::minmax_element(starts.begin(), starts.end());
    if (*right - *left > kStemDrift) return false;
    const int width = ValueAtShare(lengths, 0.3);
    stem_ = {0, ValueAtShare(starts, 0.5), ValueAtShare(starts, 0.5) + width - 1};
    return width <= AtLeastTwo(kThinStem);
  }
  // The flag may reach down beside the head.
  [[nodiscard]] bool HasHead() const {
    PixelBox head;
    int pixels = 0, widest = 0;
    for (int row = RowAt(kHeadTop); row < box_.Height(); ++row) {
      if (Row(row).empty()) return false;
      const InkRun& run = Row(row).front();
      head.Join({run.first, run.last, run.row, run.row});
      pixels += run.Length();
      widest = std::max(widest, run.Length());
    }
    const int left = stem_.first - head.x0, right = std::max(head.x1 - stem_.last, 0);
    return widest >= 2 * stem_.Length() && left > 2 * right &&
           stem_.first - head.x0 >= AtLeastTwo(kHeadReach) && head.x1 <= stem_.last + kStemDrift &&
           pixels >= kHeadFill * head.Width() * head.Height();
  }
  [[nodiscard]] bool HasFlag() const {
    int reach = 0;
    for (int row = 0; row < RowAt(kHeadTop); ++row) {
      // A serif reaches to the left as well.
      if (!Row(row).empty() && row < RowAt(kStemTop) && Row(row).front().first < stem_.first - 1)
        return false;
      if (!Row(row).empty()) reach = std::max(reach, Row(row).back().last - stem_.last);
    }
    return reach >= AtLeastTwo(kFlagReach);
  }

  PixelBox box_;
  std::vector<std::vector<InkRun>> rows_;
  InkRun stem_;
};

}  // namespace

bool LooksLikeMusicNote(const Glyph& glyph, const GlyphLine& line) {
  if (glyph.components.size() != 1) return false;
  const double height = kLeastHeight * line.metrics.xHeight;
  if (glyph.box.Height() < height || glyph.box.Width() < kLeastWidth) return false;
  // A note may stand upright beside slanted letters.
  return NoteShape(glyph, line.metrics.baseline, 0).IsNote() ||
         (line.slant != 0 && NoteShape(glyph, line.metrics.baseline, line.slant).IsNote());
}

}  // namespace quillomar
