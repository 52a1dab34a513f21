#include "spu/duration.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/edit_attempt.h"
#include "spu/parse.h"
#include "spu/rooms.h"
#include "spu/sequence_edit.h"

namespace quillomar {
namespace {

constexpr int kLargestDelayMs = 734287;

int LastIndex(const SubpictureUnit& unit) {
  return static_cast<int>(unit.state.sequences.size()) - 1;
}

bool Holds(const SubpictureUnit& unit, std::uint8_t code, int sequence) {
  return FindCommand(unit, code, sequence).has_value();
}

// The sequence after which nothing is shown any more.
std::optional<int> EndingSequence(const SubpictureUnit& unit) {
  for (int i = LastIndex(unit); i >= 0; --i) {
    if (Holds(unit, kStop, i)) return i;
    if (Holds(unit, kStart, i) || Holds(unit, kForcedStart, i)) return std::nullopt;
  }
  return std::nullopt;
}

int SmallestDelayMs(const SpuState& state, int index, VideoStandard standard) {
  const int before =
      index == 1 ? 0 : RawDelayMs(state.sequences[static_cast<std::size_t>(index) - 1].delay);
  return before + WholeFrameMs(standard);
}

// Delay units that are shown as the frames of that many ms. Frames of NTSC count as a little
// shorter when a delay is shown, so one that ends just on a frame's border shows as a frame more; a
// unit less does not.
std::uint16_t DelayShownAs(int ms, VideoStandard standard) {
  const std::uint16_t delay = DelayFromMs(ms, standard);
  const bool same = DelayFromMs(ShownDelayMs(delay, standard), standard) == delay;
  return same ? delay : static_cast<std::uint16_t>(delay - 1);
}

}  // namespace

Result AddStopCommand(SubpictureUnit& unit, const SpuContext& context) {
  const int last = LastIndex(unit);
  if (Holds(unit, kStop, last)) return Result::kFailed;
  const std::array commands = {NewCommand{kStop, {}}, NewCommand{kEndOfCommands, {}}};
  return AttemptEdit(unit, [&] {
    // Whether there is room now is the addition's to find out.
    static_cast<void>(MakeRoom(unit, SequenceSize(commands), context));
    const int delay = DelayMs(unit, last, context.standard) + WholeFrameMs(context.standard);
    return AddControlSequence(unit, last, delay, commands, context);
  });
}

Result RemoveStopCommand(SubpictureUnit& unit, const SpuContext& context) {
  const auto ending = EndingSequence(unit);
  return ending ? RemoveControlSequence(unit, *ending, context) : Result::kDone;
}

bool HasTimedStop(const SubpictureUnit& unit) {
  return EndingSequence(unit).has_value();
}

std::optional<DelayLimits> DelayRange(const SubpictureUnit& unit, int index,
                                      std::optional<std::uint32_t> nextPts,
                                      VideoStandard standard) {
  if (index == -1) index = LastIndex(unit);
  if (index < 1 || index > LastIndex(unit)) return std::nullopt;
  const std::uint32_t pts = unit.state.pts;
  DelayLimits limits{SmallestDelayMs(unit.state, index, standard), kLargestDelayMs};
  if (nextPts && *nextPts > pts) {
    const std::int64_t gap = std::int64_t{*nextPts / kTicksPerMs} - pts / kTicksPerMs;
    limits.largest =
        static_cast<int>(std::min<std::int64_t>(gap - WholeFrameMs(standard), kLargestDelayMs));
  }
  limits.largest = std::min(std::max(limits.largest, limits.smallest), kLargestDelayMs);
  return limits;
}

Result SetDelay(SubpictureUnit& unit, int index, int ms, const SpuContext& context) {
  SpuState& state = unit.state;
  if (index == -1) index = LastIndex(unit);
  if (index < 1 || index > LastIndex(unit) || SequencesOverlap(state)) return Result::kFailed;
  const VideoStandard standard = context.standard;
  const auto unchanged = [&](std::uint16_t delay) {
    return ShownDelayMs(delay, standard) == DelayMs(unit, index, standard);
  };
  if (unchanged(DelayShownAs(ms, standard))) return Result::kDone;
  const int allowed = std::max(ms, SmallestDelayMs(state, index, standard));
  const std::uint16_t delay = DelayShownAs(allowed, standard);
  if (unchanged(delay)) return Result::kDone;
  ControlSequence& sequence = state.sequences[static_cast<std::size_t>(index)];
  sequence.delay = delay;
  PutShort(state.bytes, sequence.ownOffset + kSequenceDelayOffset, delay);
  state.modified = true;
  return Result::kDone;
}

}  // namespace quillomar
