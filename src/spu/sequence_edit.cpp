#include "spu/sequence_edit.h"

#include <algorithm>

#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/edit_attempt.h"
#include "spu/parse.h"
#include "spu/rooms.h"

namespace quillomar {
namespace {

// Frames per ms as times entered are rounded: 1 / 40 and 1000 / 33366.7 of a frame.
constexpr double kPalFramesPerMs = 0.025;
constexpr double kNtscFramesPerMs = 0.02997003;

int CountOf(const SpuState& state) {
  return static_cast<int>(state.sequences.size());
}

bool HasValues(std::uint8_t code) {
  return code == kSetColour || code == kSetContrast;
}

Bytes EncodeSequence(int delayMs, std::span<const NewCommand> commands, VideoStandard standard) {
  Bytes bytes(kSequenceHeaderSize);
  PutShort(bytes, kSequenceDelayOffset, DelayFromMs(delayMs, standard));
  for (const NewCommand& command : commands) {
    bytes.push_back(command.code);
    if (!HasValues(command.code)) continue;
    bytes.resize(bytes.size() + kPixelTypeValuesSize);
    PutShort(bytes, bytes.size() - kPixelTypeValuesSize, PackPixelTypeValues(command.values));
  }
  return bytes;
}

void PutNext(SpuState& state, int own, int next) {
  PutShort(state.bytes, static_cast<std::size_t>(own) + kSequenceNextOffset,
           static_cast<std::uint16_t>(next));
}

// After the bytes from sequence `first` on have moved by `moved`: mends their chain and the rooms.
// The parsed sequences still hold the offsets from before.
void MendFrom(SpuState& state, std::size_t first, int moved) {
  for (std::size_t i = first; i < state.sequences.size(); ++i) {
    const ControlSequence& sequence = state.sequences[i];
    PutNext(state, sequence.ownOffset + moved, sequence.nextOffset + moved);
  }
  PutShort(state.bytes, kSpuSizeOffset, static_cast<std::uint16_t>(state.TotalSize()));
  state.freeRoom -= moved;
}

void Insert(SpuState& state, std::size_t after, const Bytes& sequence) {
  const std::size_t following = after + 1;
  const bool last = following == state.sequences.size();
  const int at = last ? state.TotalSize() : state.sequences[following].ownOffset;
  const int size = static_cast<int>(sequence.size());
  state.bytes.insert(state.bytes.begin() + at, sequence.begin(), sequence.end());
  PutNext(state, at, last ? at : at + size);
  PutNext(state, state.sequences[after].ownOffset, at);
  MendFrom(state, following, size);
}

void Erase(SpuState& state, std::size_t first, std::size_t count) {
  const std::size_t following = first + count;
  const bool last = following == state.sequences.size();
  const int begin = state.sequences[first].ownOffset;
  const int end = last ? state.TotalSize() : state.sequences[following].ownOffset;
  state.bytes.erase(state.bytes.begin() + begin, state.bytes.begin() + end);
  const int previous = state.sequences[first - 1].ownOffset;
  PutNext(state, previous, last ? previous : begin);
  MendFrom(state, following, begin - end);
}

Result ParseAndSelect(SubpictureUnit& unit, int index, const SpuContext& context) {
  if (Failed(ParseControlSequences(unit, 0, 0, context))) return Result::kFailed;
  SelectControlSequence(unit, std::min(index, CountOf(unit.state) - 1));
  return Result::kDone;
}

// A last sequence that is cut off by the unit's end would swallow what is put behind it.
bool CanAddBehind(const SpuState& state, int index) {
  if (index < 0 || index >= CountOf(state)) return false;
  const auto& commands = state.sequences[static_cast<std::size_t>(index)].commands;
  return !commands.empty() && commands.back().code == kEndOfCommands;
}

}  // namespace

std::uint16_t DelayFromMs(int ms, VideoStandard standard) {
  const int ticks = FrameTicks(standard);
  const double frames = ms * (IsPal(standard) ? kPalFramesPerMs : kNtscFramesPerMs) + 0.5;
  const int most = kMaxDelay * kDelayUnitTicks / ticks;
  const int wholeFrames = std::clamp(static_cast<int>(frames), 0, most);
  return static_cast<std::uint16_t>(wholeFrames * ticks / kDelayUnitTicks);
}

int SequenceSize(std::span<const NewCommand> commands) {
  std::size_t size = kSequenceHeaderSize;
  for (const NewCommand& command : commands) {
    const bool last = &command == &commands.back();
    if ((command.code == kEndOfCommands) != last) return 0;
    if (!last && command.code != kStop && !HasValues(command.code)) return 0;
    size += 1 + (HasValues(command.code) ? kPixelTypeValuesSize : 0);
  }
  return commands.empty() ? 0 : static_cast<int>(size);
}

Result AddControlSequence(SubpictureUnit& unit, int after, int delayMs,
                          std::span<const NewCommand> commands, const SpuContext& context) {
  const int size = SequenceSize(commands);
  if (!unit.complete || size == 0 || GrowthRoom(unit.state) < size ||
      !CanAddBehind(unit.state, after)) {
    context.reporter.ReportError("Not enough space in the subpic pack to add another DCSQT!");
    return Result::kFailed;
  }
  return AttemptEdit(unit, [&] {
    Insert(unit.state, static_cast<std::size_t>(after),
           EncodeSequence(delayMs, commands, context.standard));
    return ParseAndSelect(unit, after + 1, context);
  });
}

Result RemoveControlSequence(SubpictureUnit& unit, int index, const SpuContext& context) {
  const int count = CountOf(unit.state);
  if (count <= 1) {
    context.reporter.ReportError("I can't remove the last remaining DCSQT!");
    return Result::kFailed;
  }
  if (index == 0) {
    context.reporter.ReportError("I can't remove the first DCSQT!");
    return Result::kFailed;
  }
  if (index == -1) index = count - 1;
  if (index < 0 || index >= count) return Result::kFailed;
  return RemoveControlSequences(unit, index, 1, context);
}

Result RemoveControlSequences(SubpictureUnit& unit, int first, int count,
                              const SpuContext& context) {
  if (!unit.complete || !SequencesCanMove(unit.state)) return Result::kFailed;
  return AttemptEdit(unit, [&] {
    Erase(unit.state, static_cast<std::size_t>(first), static_cast<std::size_t>(count));
    return ParseAndSelect(unit, first, context);
  });
}

}  // namespace quillomar
