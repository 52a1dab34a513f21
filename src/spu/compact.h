#pragma once

#include <span>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Makes the unit as short as it can be: brings the top field's codes before the bottom field's and
// moves the control sequences down over the spare room. `headerLengths` are the bytes of PES header
// data of the packs that it will be written into, in order: where the end of the unit would leave a
// gap in its last pack that is too small for a padding stream, spare bytes are kept or added to
// close it. A unit whose bitmap cannot be decoded keeps its spare bytes. Fails, with the parser's
// message, on a unit whose control sequences do not parse.
Result Compact(SubpictureUnit& unit, std::span<const int> headerLengths, const SpuContext& context);

}  // namespace quillomar
