#include "ocr/cut_text.h"

#include <algorithm>
#include <limits>

#include "base/format.h"
#include "spu/position.h"

namespace quillomar {
namespace {

constexpr int kBandMargin = 3;  // rows
constexpr int kEndMargin = 5;   // columns beside text with nothing next to it
constexpr int kSpaceMargin = 2;

// The columns and rows that go with a range of boxes.
class Cut {
 public:
  Cut(const SubpictureUnit& unit, BoxRange range) : unit_(unit), range_(range) {
    if (At(range_.last).ch == kLineEnd && range_.last > range_.first) --range_.last;
    FindBand();
    FindEdges();
  }

  [[nodiscard]] int Top() const { return top_; }
  [[nodiscard]] int Bottom() const { return bottom_; }
  // Columns of a row of the bitmap.
  [[nodiscard]] int Left(int row) const { return left_ - Shift(row); }
  [[nodiscard]] int Right(int row) const { return right_ - Shift(row); }
  [[nodiscard]] int Width() const { return right_ - left_ + 1; }
  [[nodiscard]] int Recentring() const { return (right_ - left_) / 2; }

 private:
  [[nodiscard]] const CharBox& At(int index) const {
    return unit_.charBoxes[static_cast<std::size_t>(index)];
  }
  [[nodiscard]] bool IsInLine(int index) const {
    return index >= 0 && index < static_cast<int>(unit_.charBoxes.size()) &&
           At(index).ch != kLineEnd && At(index).ch != 0;
  }
  [[nodiscard]] int Shift(int row) const {
    const CharBox& first = At(range_.first);
    return SlantShift(row, first.lineRefRow, first.lineSlant);
  }

  void FindBand() {
    int first = range_.first;
    while (IsInLine(first - 1)) --first;
    top_ = At(first).y0;
    bottom_ = At(first).y1;
    for (int i = first + 1; IsInLine(i); ++i) {
      top_ = std::min(top_, At(i).y0);
      bottom_ = std::max(bottom_, At(i).y1);
    }
    const int rows = static_cast<int>(unit_.pixels.size()) / unit_.state.width;
    top_ = std::max(top_ - kBandMargin, 0);
    bottom_ = std::min(bottom_ + kBandMargin, rows - 1);
  }

  void FindEdges() {
    const CharBox& first = At(range_.first);
    if (IsInLine(range_.first - 1)) {
      const CharBox& previous = At(range_.first - 1);
      left_ = (previous.x1 + first.x0 + 1) / 2;
      if (previous.ch == U' ') left_ -= kSpaceMargin;
    } else {
      left_ = std::max(first.x0 - kEndMargin, LeftOfContent(first.x0));
    }
    const CharBox& last = At(range_.last);
    right_ = last.x1 + kEndMargin;
    if (IsInLine(range_.last + 1)) {
      const CharBox& next = At(range_.last + 1);
      right_ = (next.x0 + last.x1 + 1) / 2;
      if (next.ch == U' ') right_ += kSpaceMargin;
    }
    right_ = std::max(right_, left_ - 1);
  }

  // Where no row begins left of the content; all rows get the same edge, or what stands behind it
  // would be torn.
  [[nodiscard]] int LeftOfContent(int furthest) const {
    const int shift = std::max(Shift(top_), Shift(bottom_));
    return std::min(furthest, unit_.state.statistics.box.left + shift);
  }

  const SubpictureUnit& unit_;
  BoxRange range_;
  int top_ = 0, bottom_ = 0;
  int left_ = 0, right_ = 0;
};

// Tells pixels of the line that is cut from those of the lines above and below, which reach into
// its rows with accents, descenders and outlines.
class LinesNear {
 public:
  LinesNear(const SubpictureUnit& unit, int line, int top, int bottom) {
    for (const CharBox& box : unit.charBoxes) {
      if (box.ch == kLineEnd || box.ch == U' ') continue;
      if (box.line == line) {
        own_.push_back(&box);
      } else if (box.y1 + kBandMargin >= top && box.y0 - kBandMargin <= bottom) {
        others_.push_back(&box);
      }
    }
  }

  [[nodiscard]] bool AnyIn(int row) const {
    return std::any_of(others_.begin(), others_.end(), [row](const CharBox* box) {
      return row >= box->y0 - kBandMargin && row <= box->y1 + kBandMargin;
    });
  }
  [[nodiscard]] bool IsOther(int column, int row) const {
    const int distance = Distance(others_, column, row);
    return distance <= kBandMargin && distance < Distance(own_, column, row);
  }

 private:
  static int Distance(const std::vector<const CharBox*>& boxes, int column, int row) {
    int least = std::numeric_limits<int>::max();
    for (const CharBox* box : boxes) {
      const int x = column + SlantShift(row, box->lineRefRow, box->lineSlant);
      const int across = std::max({box->x0 - x, x - box->x1, 0});
      const int along = std::max({box->y0 - row, row - box->y1, 0});
      least = std::min(least, std::max(across, along));
    }
    return least;
  }

  std::vector<const CharBox*> own_, others_;
};

// What stands left of the cut moves right; what stands right of it follows.
void CutRow(std::span<std::uint8_t> row, int left, int right, int moveRight,
            std::uint8_t background) {
  const Bytes before(row.begin(), row.end());
  std::fill(row.begin(), row.end(), background);
  const int width = static_cast<int>(row.size());
  for (int from = 0; from < width; ++from) {
    if (from >= left && from <= right) continue;
    const int to = from + moveRight - (from > right ? right - left + 1 : 0);
    if (to < 0 || to >= width) continue;
    row[static_cast<std::size_t>(to)] = before[static_cast<std::size_t>(from)];
  }
}

// Takes the pixels of other lines out of a row and gives them, in their columns.
Bytes TakeOthers(std::span<std::uint8_t> row, int y, const LinesNear& near,
                 std::uint8_t background) {
  Bytes others(row.size(), background);
  for (std::size_t x = 0; x < row.size(); ++x) {
    if (row[x] == background || !near.IsOther(static_cast<int>(x), y)) continue;
    std::swap(row[x], others[x]);
  }
  return others;
}

// Puts pixels of other lines back. Where the moved line now stands in the same place, ink goes
// before soft edges, and these before outlines.
void PutBack(std::span<const std::uint8_t> others, std::span<std::uint8_t> row,
             const TextRoles& roles, std::uint8_t background) {
  const auto rank = [&](std::uint8_t type) {
    return type == background ? 0 : type == roles.textType ? 3 : type == roles.outlineType ? 1 : 2;
  };
  for (std::size_t x = 0; x < others.size(); ++x) {
    if (rank(others[x]) > rank(row[x])) row[x] = others[x];
  }
}

// The cut of a neighbouring line must know where this one's characters now stand.
void MoveBoxes(SubpictureUnit& unit, BoxRange range, int line, int moveRight, int width) {
  for (int i = 0; i < static_cast<int>(unit.charBoxes.size()); ++i) {
    CharBox& box = unit.charBoxes[static_cast<std::size_t>(i)];
    if (box.line != line || box.ch == kLineEnd) continue;
    const int by = moveRight - (i > range.last ? width : 0);
    box.x0 += by;
    box.x1 += by;
    if (i >= range.first && i <= range.last) box.ch = U' ';
  }
}

// Line of the frame on which the content ends.
int ScreenBottom(const SpuState& state) {
  return state.area.sy - state.hiddenRows + state.statistics.box.bottom;
}

void AlignBottom(SubpictureUnit& unit, int bottomBefore, bool evenMoves,
                 const SpuContext& context) {
  const int rise = bottomBefore - ScreenBottom(unit.state);
  if (unit.state.statistics.empty || rise <= 0) return;
  if (Failed(MoveVertical(unit, unit.state.verticalOffset - rise, evenMoves, context))) {
    context.reporter.LogLine(Format("Subpic %d could not be moved down", unit.number));
  }
}

// `change` works on the pixels.
template <typename Change>
Result ChangeBitmap(SubpictureUnit& unit, const CutOptions& options, const SpuContext& context,
                    Change change) {
  if (Failed(DecodeBitmap(unit, context))) return Result::kFailed;
  const int bottomBefore = ScreenBottom(unit.state);
  change();
  if (Failed(ReencodeBitmap(unit, options.margins, context))) {
    context.reporter.ReportError(
        Format("Couldn't erase text of subpic %d: the changed bitmap doesn't fit on the DVD",
               unit.number));
    return Result::kFailed;
  }
  if (options.alignBottom) AlignBottom(unit, bottomBefore, options.evenMoves, context);
  return Result::kDone;
}

}  // namespace

void CutBoxRange(SubpictureUnit& unit, BoxRange range, bool recenter) {
  const Cut cut(unit, range);
  const int moveRight = recenter ? cut.Recentring() : 0;
  const auto background = static_cast<std::uint8_t>(unit.state.statistics.backgroundType);
  const auto width = static_cast<std::size_t>(unit.state.width);
  const int line = unit.charBoxes[static_cast<std::size_t>(range.first)].line;
  const LinesNear near(unit, line, cut.Top(), cut.Bottom());
  for (int y = cut.Top(); y <= cut.Bottom(); ++y) {
    const std::span row(unit.pixels.data() + static_cast<std::size_t>(y) * width, width);
    const Bytes others = near.AnyIn(y) ? TakeOthers(row, y, near, background) : Bytes();
    CutRow(row, cut.Left(y), cut.Right(y), moveRight, background);
    PutBack(others, row, unit.textRoles, background);
  }
  MoveBoxes(unit, range, line, moveRight, cut.Width());
}

Result CutText(SubpictureUnit& unit, std::span<const BoxRange> ranges, const CutOptions& options,
               const SpuContext& context) {
  const std::vector<CharBox> before = unit.charBoxes;
  const Result result = ChangeBitmap(unit, options, context, [&] {
    for (const BoxRange& range : ranges) CutBoxRange(unit, range, options.recenter);
  });
  if (Failed(result)) unit.charBoxes = before;
  return result;
}

Result CutAllText(SubpictureUnit& unit, const CutOptions& options, const SpuContext& context) {
  CutOptions inPlace = options;
  inPlace.alignBottom = false;
  return ChangeBitmap(unit, inPlace, context, [&] {
    std::fill(unit.pixels.begin(), unit.pixels.end(),
              static_cast<std::uint8_t>(unit.state.statistics.backgroundType));
  });
}

}  // namespace quillomar
