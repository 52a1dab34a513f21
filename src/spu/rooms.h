#pragma once

#include "spu/subpicture_unit.h"

namespace quillomar {

// Moves the control-sequence area by `bytes` (negative: towards the bitmap) and mends the header,
// the own and next offsets, both rooms and the total size; spare room + free room is conserved.
// Fails, changing nothing, when a room or the largest unit size would be passed, and when what
// looks like spare room holds another bitmap. The unit has been decoded, else its spare room is 0.
[[nodiscard]] Result ShiftControlSequences(SubpictureUnit& unit, int bytes);

// True when a later sequence shows another bitmap than the first. Its codes lie in what would else
// be spare room.
[[nodiscard]] bool HasOtherBitmap(const SpuState& state);

}  // namespace quillomar
