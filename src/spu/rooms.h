#pragma once

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Moves the control-sequence area by `bytes` (negative: towards the bitmap) and mends the header,
// the own and next offsets, both rooms and the total size; spare room + free room is conserved.
// Fails, changing nothing, when a room or the largest unit size would be passed, and when what
// looks like spare room holds another bitmap. The unit has been decoded, else its spare room is 0.
[[nodiscard]] Result ShiftControlSequences(SubpictureUnit& unit, int bytes);

// True when a sequence stands inside another, as in a malformed chain: what is written into the one
// would change the other.
[[nodiscard]] bool SequencesOverlap(const SpuState& state);

// True when bytes can be put between or in front of the control sequences and taken away there: no
// sequence stands inside another, and no bitmap lies among or behind them.
[[nodiscard]] bool SequencesCanMove(const SpuState& state);

// Bytes by which control sequences may grow: the free room, up to the largest unit size; 0 where
// they cannot be moved.
[[nodiscard]] int GrowthRoom(const SpuState& state);

// Makes GrowthRoom at least `bytes` where the spare room allows it, by moving the control sequences
// towards the bitmap as far as is needed; decodes the bitmap to know that room. Fails when there is
// still less; what could be made stays made.
Result MakeRoom(SubpictureUnit& unit, int bytes, const SpuContext& context);

// True when a later sequence shows another bitmap than the first. Its codes lie in what would else
// be spare room.
[[nodiscard]] bool HasOtherBitmap(const SpuState& state);

// True for a damaged unit whose sizes, in its header, are part of its picture: its codes can't be
// moved, and another size changes them.
[[nodiscard]] bool CodesBeginInHeader(const SpuState& state);

}  // namespace quillomar
