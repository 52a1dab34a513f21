#pragma once

#include <optional>
#include <span>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

// Moves of a subpicture on the frame. All are counted from the area as found, so none adds to an
// earlier one; the bitmap's codes are not touched. Rows that a move cuts off stay in the bitmap,
// hidden, and come back with the next one. Change-colour bands go with the picture.
namespace quillomar {

// Moves by `dx` pixels to the right (negative: left) from the area as found, no further than the
// picture's edges, and remembers that distance. Fails, changing nothing, on a unit that cannot be
// decoded or moved.
Result MoveHorizontal(SubpictureUnit& unit, int dx, const SpuContext& context);

// Moves by `v` lines up (negative: down) from the area as found, as far as the content stays
// between the unit's borders, and remembers that distance. An odd move down drops the first row; a
// move up that reaches the frame's top cuts rows off, up to the last three. With `evenMoves` the
// distance is rounded towards zero to an even one. Fails, changing nothing, on a unit that cannot
// be decoded or moved.
Result MoveVertical(SubpictureUnit& unit, int v, bool evenMoves, const SpuContext& context);

struct BorderOptions {
  bool flush = false;      // push content against the nearer border
  bool evenMoves = false;  // as in MoveVertical
};
// Gives the unit borders of that many lines at the frame's top and bottom and moves its content
// between them. Returns the vertical offset that results. Leaves a unit with buttons alone. Returns
// nothing, having changed nothing, when the content is too high (with a message) or the unit cannot
// be decoded or moved.
std::optional<int> ApplyBorder(SubpictureUnit& unit, int border, BorderOptions options,
                               const SpuContext& context);

// True when the bitmap leaves room for horizontal moves.
[[nodiscard]] bool IsNarrowerThanPicture(const SubpictureUnit& unit);

// The rows of a decoded bitmap, each of state.width bytes, that are seen in the frame; the first
// one stands on line state.area.sy.
[[nodiscard]] std::span<const std::uint8_t> ShownPixels(const SubpictureUnit& unit);

}  // namespace quillomar
