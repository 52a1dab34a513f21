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
// Of a stem that is broken: the part of its rows that is left above, and shares of the height that
// a head on its own has.
constexpr double kBrokenStem = 0.4;
constexpr double kLeastHead = 0.1, kMostHead = 0.45;
constexpr int kMostBlankRows = 1;      // between head and flag
constexpr double kFlagTopReach = 0.6;  // of the flag's top, as a share of its whole reach
constexpr double kLeastFlag = 0.2;     // rows of a note in which a flag without a stem has ink

class NoteShape {
 public:
  NoteShape(const Glyph& glyph, int refRow, float slant) {
    box_ = StraightBox(glyph, refRow, slant);
    rows_.resize(static_cast<std::size_t>(box_.Height()));
    for (const Component& component : glyph.components) {
      for (const InkRun& run : component.runs) {
        const int shift = SlantShift(run.row, refRow, slant);
        rows_[static_cast<std::size_t>(run.row - box_.y0)].push_back(
            {run.row, run.first + shift, run.last + shift});
      }
    }
    for (std::vector<InkRun>& row : rows_) {
      std::sort(row.begin(), row.end(),
                [](const InkRun& a, const InkRun& b) { return a.first < b.first; });
    }
  }

  // A capital I, whose serifs may pass for flag and head where it is not straightened.
  [[nodiscard]] bool HasSerifs() const {
    if (Row(0).size() != 1 || Row(box_.Height() - 1).size() != 1) return false;
    const InkRun &top = Row(0).front(), &bottom = Row(box_.Height() - 1).front();
    return std::abs(top.first - bottom.first) <= kStemDrift &&
           std::abs(top.last - bottom.last) <= kStemDrift && 2 * top.Length() > box_.Width();
  }
  [[nodiscard]] bool IsNote() {
    return FindStem() && HasHead(RowAt(kHeadTop)) && HasFlag() && FlagLeavesStem();
  }
  // Thin type loses stems: what is left of one is above, the head stands by itself.
  [[nodiscard]] bool IsBrokenNote() {
    return FindBrokenStem() && HasHead(TopOfHead()) && HasFlag() && FlagEndsRight();
  }
  // Type may lose all of the stem between the flag and the head.
  [[nodiscard]] bool IsStemlessNote() {
    const PixelBox head = LooseHead();
    if (head.Height() < 2 || head.Width() < 2 || head.Height() > kMostHead * box_.Height())
      return false;
    stem_ = {0, head.x1, head.x1};
    return HasLooseFlag(head.y0 - box_.y0);
  }

 private:
  static PixelBox StraightBox(const Glyph& glyph, int refRow, float slant) {
    PixelBox box;
    for (const Component& component : glyph.components)
      box.Join(Straightened(component, refRow, slant));
    return box;
  }
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
    return *right - *left <= kStemDrift && TakeStem(starts, lengths);
  }
  // From the top down to where nothing but the flag is left.
  bool FindBrokenStem() {
    std::vector<int> starts, lengths;
    for (int row = 0; row <= RowAt(kStemBottom); ++row) {
      if (Row(row).empty() || Row(row).size() > 2) return false;
      const int start = Row(row).front().first;
      if (!starts.empty() && std::abs(start - starts.front()) > kStemDrift) {
        if (start < starts.front()) return false;
        break;
      }
      starts.push_back(start);
      lengths.push_back(Row(row).front().Length());
    }
    return static_cast<int>(starts.size()) >= kBrokenStem * RowAt(kStemBottom) &&
           TakeStem(starts, lengths);
  }
  bool TakeStem(const std::vector<int>& starts, const std::vector<int>& lengths) {
    const int width = ValueAtShare(lengths, 0.3);
    stem_ = {0, ValueAtShare(starts, 0.5), ValueAtShare(starts, 0.5) + width - 1};
    return width <= AtLeastTwo(kThinStem);
  }
  // Where what stands left of the stem begins.
  [[nodiscard]] int TopOfHead() const {
    int top = box_.Height();
    while (top > 0 && !Row(top - 1).empty() && Row(top - 1).front().first < stem_.first) --top;
    return top;
  }
  // The flag may reach down beside the head.
  [[nodiscard]] bool HasHead(int top) const {
    PixelBox head;
    int pixels = 0, widest = 0;
    for (int row = top; row < box_.Height(); ++row) {
      if (Row(row).empty()) return false;
      const InkRun& run = Row(row).front();
      head.Join({run.first, run.last, run.row, run.row});
      pixels += run.Length();
      widest = std::max(widest, run.Length());
    }
    if (head.Height() < kLeastHead * box_.Height() || head.Height() > kMostHead * box_.Height())
      return false;
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
    // It bends away from the stem's top.
    const int topReach = Row(0).back().last - stem_.last;
    return reach >= AtLeastTwo(kFlagReach) && topReach <= kFlagTopReach * reach;
  }
  // In some row both are seen; of a slanted bar the upper part is no flag.
  [[nodiscard]] bool FlagLeavesStem() const {
    return std::any_of(rows_.begin(), rows_.begin() + RowAt(kHeadTop), [this](const auto& row) {
      return !row.empty() &&
             row.back().last - row.front().first + 1 >= stem_.Length() + AtLeastTwo(kFlagReach);
    });
  }

  // The solid ink at the bottom; empty when it is not solid.
  [[nodiscard]] PixelBox LooseHead() const {
    PixelBox head;
    int pixels = 0;
    for (int row = box_.Height() - 1; row >= 0 && !Row(row).empty(); --row) {
      const InkRun& run = Row(row).front();
      const bool isStem = 2 * run.Length() <= head.Width() && run.last >= head.x1 - 1;
      if (isStem || Row(row).back().last > std::max(head.x1 + kStemDrift, run.last)) break;
      head.Join({run.first, run.last, run.row, run.row});
      pixels += run.Length();
    }
    return pixels >= kHeadFill * head.Width() * head.Height() ? head : PixelBox();
  }
  // Begins where the stem would end, and bends away from it to the right; a question mark bends to
  // both sides.
  [[nodiscard]] bool HasLooseFlag(int headTop) const {
    int rows = 0, top = 0, reach = 0, topReach = 0;
    for (int row = 0; row < headTop; ++row) {
      if (Row(row).empty()) continue;
      const int start = Row(row).front().first - stem_.first;
      const int end = Row(row).back().last - stem_.last;
      if (rows++ == 0) top = start, topReach = end;
      const bool bendsBack = start < top - 1 && row < RowAt(kStemBottom);
      if (start < -kStemDrift || bendsBack) return false;
      if (end > kStemDrift && row > RowAt(kHeadTop)) return false;
      reach = std::max(reach, end);
    }
    return rows >= kLeastFlag * box_.Height() && top <= kStemDrift &&
           reach >= AtLeastTwo(kFlagReach) && topReach <= kFlagTopReach * reach;
  }

  // Close to the head, or a question mark would be one.
  [[nodiscard]] bool FlagEndsRight() const {
    int row = TopOfHead() - 1, blank = 0;
    while (row > 0 && Row(row).empty()) --row, ++blank;
    return blank <= kMostBlankRows && Row(row).back().last - stem_.last >= AtLeastTwo(kFlagReach);
  }

  PixelBox box_;
  std::vector<std::vector<InkRun>> rows_;
  InkRun stem_;
};

}  // namespace

bool LooksLikeMusicNote(const Glyph& glyph, const GlyphLine& line) {
  const double height = kLeastHeight * line.metrics.xHeight;
  if (glyph.box.Height() < height || glyph.box.Width() < kLeastWidth) return false;
  if (NoteShape(glyph, line.metrics.baseline, line.slant).HasSerifs()) return false;
  const auto isNote = [&](float slant) {
    NoteShape shape(glyph, line.metrics.baseline, slant);
    return shape.IsNote() ||
           (glyph.components.size() > 1 && (shape.IsBrokenNote() || shape.IsStemlessNote()));
  };
  // A note may stand upright beside slanted letters.
  return isNote(0) || (line.slant != 0 && isNote(line.slant));
}

}  // namespace quillomar
