#pragma once

#include "spu/subpicture_unit.h"

namespace quillomar {

// Moves the control-sequence area by `bytes` (negative: towards the bitmap) and mends the header,
// the own and next offsets, both rooms and the total size; spare room + free room is conserved.
// Fails, changing nothing, when a room or the largest unit size would be passed.
Result ShiftControlSequences(SubpictureUnit& unit, int bytes);

}  // namespace quillomar
