#pragma once

#include <string>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Parses the chain of control sequences from the unit's bytes into its state: sequences,
// change-colour tables, display area, field offsets, sizes. `index` 0 starts anew at the header's
// offset (an argument inside the unit is ignored); with another index the chain goes on at
// `offset`. A last command that is cut off by the unit's end is left out. Fails on an offset
// outside the unit, on a chain that turns back or overlaps itself and on an unknown command, each
// with its message; what was parsed before stays.
Result ParseControlSequences(SubpictureUnit& unit, int index, std::uint16_t offset,
                             const SpuContext& context);

// A delay in ms as it is shown, rounded up to a whole number of frames.
[[nodiscard]] int ShownDelayMs(std::uint16_t delay, VideoStandard standard);
// Delay of a sequence (-1: the last one) in ms, rounded up to a whole number of frames; 0 for an
// index that does not exist.
[[nodiscard]] int DelayMs(const SubpictureUnit& unit, int index, VideoStandard standard);

// Display duration in ms as formatters take it: -1 for a unit with one sequence (no end).
[[nodiscard]] int DurationMs(const SubpictureUnit& unit, VideoStandard standard);

// One line of the text dump of the parsed commands, ending in a line break (a CHG_COLCON gives all
// its lines at once). Start with sequence 0, command -1; returns kFailed when the dump is finished
// (no text then).
Result DumpCommands(const SubpictureUnit& unit, VideoStandard standard, std::string& text,
                    int& sequence, int& command);

// True when a forced start stands in some sequence.
[[nodiscard]] bool IsForced(const SubpictureUnit& unit);

// True when some sequence starts the display and some pixel type that occurs has an alpha above 0
// in some sequence. Decodes the bitmap when it is not yet.
[[nodiscard]] bool IsShown(SubpictureUnit& unit, const SpuContext& context);

}  // namespace quillomar
