#pragma once

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Starts the unit's state anew from its bytes as they were read again, dropping its edits; the time
// is kept, for it is not read again. Fails with the parser's message, changing nothing, when the
// bytes do not parse.
Result TakeBytesAgain(SubpictureUnit& unit, Bytes bytes, int freeRoom, const SpuContext& context);

// Says that the place a unit came from no longer holds it. Always fails.
Result ReportReloadFailure(const SpuContext& context);

}  // namespace quillomar
