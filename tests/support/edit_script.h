#pragma once

#include <string>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar::test {

// Applies edits of timing, fades, colours, visibility and place to a parsed unit, four bytes of the
// script each: which edit, a sequence (counted from 2, so that a byte can name the last), a value.
// After each the unit must hold what a reader of its bytes finds, its rooms must add up, and a
// refusal must have changed nothing. Returns what was broken, with the step; empty when all held.
[[nodiscard]] std::string RunEditScript(SubpictureUnit& unit, ByteSpan script,
                                        const SpuContext& context);

}  // namespace quillomar::test
