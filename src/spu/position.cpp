#include "spu/position.h"

#include <algorithm>

#include "base/format.h"
#include "spu/edit_attempt.h"
#include "spu/place.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// A picture that fills the width but for less than this is not moved sideways.
constexpr int kLeastSideRoom = 10;
// Lines at the frame's top that moves leave free, and rows that cutting leaves of a bitmap.
constexpr int kTopReserve = 2;
constexpr int kRowsKept = 3;
constexpr int kLastCoordinate = 0xFFF;

int EvenTowardsZero(int value) {
  return value / 2 * 2;
}

// Result of a vertical move: the lines of the area and the rows cut off above it.
struct VerticalPlace {
  int sy, ey;
  int hiddenRows;
};

int ClampVertical(const SpuState& state, int v, bool evenMoves, int frameHeight) {
  const ContentBox& box = state.statistics.box;
  const int sy = state.areaAsFound.sy;
  const int highest = box.top - state.border + sy;
  const int lowest = box.bottom - frameHeight + sy;
  v = std::max({lowest + state.border, std::min(v, highest), lowest});
  if (evenMoves) v = EvenTowardsZero(v);
  // With content in the first rows only, these limits would let the area leave the frame, and the
  // unit could not be read again.
  return std::max(v, EvenTowardsZero(sy - frameHeight + 1));
}

// An odd move is the even move beyond it without the first row, so the lines keep their fields.
VerticalPlace MovedDown(const DisplayArea& found, int v) {
  const int even = EvenTowardsZero(v - 1);
  const int dropped = v - even;
  return {found.sy - even, found.ey - even - dropped, dropped};
}

VerticalPlace MovedUp(const DisplayArea& found, int v, int frameHeight) {
  const int moved = std::min(std::max(found.sy - kTopReserve, 0), EvenTowardsZero(v));
  const int mostCut = std::max(found.LinesInFrame(frameHeight) - kRowsKept, 0);
  const int cut = std::min(v - moved, mostCut);
  return {found.sy - moved, found.ey - moved - cut, cut};
}

VerticalPlace PlaceAt(const DisplayArea& found, int v, int frameHeight) {
  // A lone row has no lines in the other field to keep apart from.
  if (found.Lines() == 1) return {found.sy - v, found.ey - v, 0};
  return v < 1 ? MovedDown(found, v) : MovedUp(found, v, frameHeight);
}

Place ToPlace(const SpuState& state, const VerticalPlace& vertical) {
  const auto& starts = state.statistics.lineStarts;
  const auto row = static_cast<std::size_t>(vertical.hiddenRows);
  Place place{state.area, starts.at(row), starts.at(row + 1)};
  place.area.sy = static_cast<std::uint16_t>(vertical.sy);
  place.area.ey = static_cast<std::uint16_t>(std::min(vertical.ey, kLastCoordinate));
  return place;
}

Result NeedDecoded(SubpictureUnit& unit, const SpuContext& context) {
  return unit.state.decoded ? Result::kDone : DecodeBitmap(unit, context);
}

// Changes place and bands together.
Result Reposition(SubpictureUnit& unit, const Place& place, int hiddenRows,
                  const SpuContext& context) {
  const auto bands = FindBandsAsFound(unit.state);
  if (Failed(PutPlace(unit, place, context))) return Result::kFailed;
  unit.state.hiddenRows = hiddenRows;
  MoveBands(unit.state, bands);
  return Result::kDone;
}

std::optional<int> RefuseBorder(const SubpictureUnit& unit, const SpuContext& context) {
  context.reporter.ReportError(
      Format("Can't apply border to subpic %d because it is too high!", unit.number));
  return std::nullopt;
}

// By how much content on these lines must go up (negative: down) to stand between the borders;
// nothing when it is higher than the room between them.
std::optional<int> BorderMove(int top, int bottom, int border, bool flush, int frameHeight) {
  // Beyond any frame: the vertical move stops at the border.
  constexpr int kToTheBorder = 800;
  const int lowest = frameHeight - border;
  if (top < border) {
    const int move = top - border;
    return bottom - move > lowest ? std::nullopt : std::optional(move);
  }
  if (bottom > lowest) {
    const int move = bottom - lowest;
    return top - move < border ? std::nullopt : std::optional(move);
  }
  if (!flush) return 0;
  return top - border < lowest - bottom ? kToTheBorder : -kToTheBorder;
}

}  // namespace

Result MoveHorizontal(SubpictureUnit& unit, int dx, const SpuContext& context) {
  return AttemptEdit(unit, [&] {
    SpuState& state = unit.state;
    if (Failed(NeedDecoded(unit, context))) return Result::kFailed;
    const DisplayArea& found = state.areaAsFound;
    // An area found beyond the edge may stay where it is.
    const int rightmost = std::max(kPictureWidth - found.ex - 1, 0);
    dx = std::clamp(dx, -static_cast<int>(found.sx), rightmost);
    Place place{state.area, state.topOffset, state.bottomOffset};
    place.area.sx = static_cast<std::uint16_t>(found.sx + dx);
    place.area.ex = static_cast<std::uint16_t>(found.ex + dx);
    state.horizontalOffset = dx;
    return Reposition(unit, place, state.hiddenRows, context);
  });
}

Result MoveVertical(SubpictureUnit& unit, int v, bool evenMoves, const SpuContext& context) {
  return AttemptEdit(unit, [&] {
    SpuState& state = unit.state;
    if (Failed(NeedDecoded(unit, context))) return Result::kFailed;
    const int frameHeight = FrameHeight(context.standard);
    v = ClampVertical(state, v, evenMoves, frameHeight);
    const VerticalPlace vertical = PlaceAt(state.areaAsFound, v, frameHeight);
    state.verticalOffset = v;
    return Reposition(unit, ToPlace(state, vertical), vertical.hiddenRows, context);
  });
}

std::optional<int> ApplyBorder(SubpictureUnit& unit, int border, BorderOptions options,
                               const SpuContext& context) {
  SpuState& state = unit.state;
  if (unit.HasButtons()) return state.verticalOffset;
  const SpuState before = state;
  if (Failed(NeedDecoded(unit, context))) return std::nullopt;
  const int frameHeight = FrameHeight(context.standard);
  border = std::clamp(border, 0, frameHeight);
  const int firstLine = state.areaAsFound.sy - state.verticalOffset;
  const ContentBox& box = state.statistics.box;
  const auto move =
      BorderMove(firstLine + box.top, firstLine + box.bottom, border, options.flush, frameHeight);
  state.border = border;
  const bool moved =
      move && !Failed(MoveVertical(unit, state.verticalOffset + *move, options.evenMoves, context));
  if (moved) return state.verticalOffset;
  state = before;
  return move ? std::nullopt : RefuseBorder(unit, context);
}

bool IsNarrowerThanPicture(const SubpictureUnit& unit) {
  return unit.state.width < kPictureWidth - kLeastSideRoom;
}

std::span<const std::uint8_t> ShownPixels(const SubpictureUnit& unit) {
  const auto width = static_cast<std::size_t>(unit.state.width);
  const std::size_t hidden = width * static_cast<std::size_t>(unit.state.hiddenRows);
  const std::size_t shown = width * static_cast<std::size_t>(unit.state.height);
  const std::span<const std::uint8_t> pixels(unit.pixels);
  if (hidden >= pixels.size()) return {};
  return pixels.subspan(hidden, std::min(shown, pixels.size() - hidden));
}

}  // namespace quillomar
