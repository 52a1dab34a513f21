#pragma once

#include <optional>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Adds a sequence that stops the display one frame after the last sequence's delay, making room for
// it. Fails, changing nothing, silently when the last sequence holds a stop, else with the message
// of AddControlSequence.
Result AddStopCommand(SubpictureUnit& unit, const SpuContext& context);

// Makes the unit display until the next one: removes the sequence that ends the display, with all
// its commands. Does nothing where none does. Fails, with a message, when that is the unit's first
// sequence.
Result RemoveStopCommand(SubpictureUnit& unit, const SpuContext& context);

// True when the display ends with a stop. A last sequence without one, as of a fade, ends nothing:
// its delay is no duration.
[[nodiscard]] bool HasTimedStop(const SubpictureUnit& unit);

// Delays in ms that a sequence may be given.
struct DelayLimits {
  int smallest = 0;
  int largest = 0;
};
// From one frame after the sequence before it to one frame before the next unit of the stream
// (`nextPts`, 90 kHz; nothing when there is none). -1: the last sequence. Nothing for the first
// sequence and an index that does not exist.
[[nodiscard]] std::optional<DelayLimits> DelayRange(const SubpictureUnit& unit, int index,
                                                    std::optional<std::uint32_t> nextPts,
                                                    VideoStandard standard);

// Sets the delay of a sequence (-1: the last, whose delay is the unit's duration) to `ms`, rounded
// to a whole number of frames, but never below its smallest delay. DelayMs then gives the same
// number of frames. Writes nothing where it gives it already. Fails on the first sequence and on
// an index that does not exist.
Result SetDelay(SubpictureUnit& unit, int index, int ms, const SpuContext& context);

}  // namespace quillomar
