#pragma once

#include <span>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Delay units of a time in ms: rounded to whole frames (PAL 3600, NTSC 3003 ticks), then truncated
// to units; at least 0 and at most the last whole frame that a delay can hold.
[[nodiscard]] std::uint16_t DelayFromMs(int ms, VideoStandard standard);

// A command of a sequence to be added: stop, set colour, set contrast, or end of commands.
struct NewCommand {
  std::uint8_t code = kEndOfCommands;
  PixelTypeValues values{};  // of set colour and set contrast
};

// Bytes of a sequence of these commands; 0 for a list that cannot be added: one with another
// command, or whose end of commands is not its last one.
[[nodiscard]] int SequenceSize(std::span<const NewCommand> commands);

// Adds a control sequence behind the one at `after` (an index), taking effect `delayMs` ms after
// the unit's time, and selects it. It takes its bytes from the free room. Fails with a message,
// changing nothing, when it does not fit, when `after` does not exist and when the chain cannot be
// edited.
Result AddControlSequence(SubpictureUnit& unit, int after, int delayMs,
                          std::span<const NewCommand> commands, const SpuContext& context);

// Removes a control sequence (-1: the last), gives its bytes to the free room and selects the one
// that follows or, behind the last, the last. Fails, changing nothing, with a message for the first
// and for the only one, silently for an index that does not exist or a chain that cannot be edited.
Result RemoveControlSequence(SubpictureUnit& unit, int index, const SpuContext& context);

// The same for `count` sequences from `first` on, which is not the unit's first one; they exist.
Result RemoveControlSequences(SubpictureUnit& unit, int first, int count,
                              const SpuContext& context);

}  // namespace quillomar
