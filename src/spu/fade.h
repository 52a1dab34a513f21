#pragma once

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// A fade-in: the first sequence shows everything but the background transparent; sequences of a
// set-contrast and an end command follow, which raise each pixel type to its own alpha within an
// eighth of the unit's duration.

// Adds a fade-in to a unit of two sequences, start and stop, and selects its last step. Fails,
// changing nothing: silently on any other unit and on one whose bitmap cannot be decoded, with a
// message (unless `quiet`) when the duration or the room is too small.
Result AddFadeIn(SubpictureUnit& unit, bool quiet, const SpuContext& context);

// True when the unit begins with a fade-in, of whatever origin: all sequences between the first and
// the last hold only a set-contrast and an end command, and no alpha falls and no delay shrinks on
// the way. Of a unit without a stop the last sequence belongs to it as well.
[[nodiscard]] bool HasFadeIn(const SubpictureUnit& unit);

// Takes the fade-in away: the alphas of its last step become those of the first sequence, which is
// selected. Fails silently, changing nothing, on a unit without one.
Result RemoveFadeIn(SubpictureUnit& unit, const SpuContext& context);

}  // namespace quillomar
