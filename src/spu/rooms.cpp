#include "spu/rooms.h"

#include <algorithm>
#include <array>
#include <optional>

#include "dvd/big_endian.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

std::uint16_t Shifted(std::uint16_t offset, int bytes) {
  return static_cast<std::uint16_t>(offset + bytes);
}

std::optional<std::array<std::uint16_t, 2>> FieldOffsets(const ControlSequence& sequence) {
  for (const SpuCommand& command : sequence.commands) {
    if (command.code == kSetFieldOffsets) {
      return std::array{command.arguments[0], command.arguments[1]};
    }
  }
  return std::nullopt;
}

// Offsets of a bitmap that would stay where they are while its codes move.
bool HasBitmapBehind(const SpuState& state) {
  return std::any_of(state.sequences.begin(), state.sequences.end(), [&](const auto& sequence) {
    const auto offsets = FieldOffsets(sequence);
    return offsets && std::max((*offsets)[0], (*offsets)[1]) > state.dcsqtOffset;
  });
}

bool CanShift(const SpuState& state, int bytes) {
  if (bytes < 0 && HasOtherBitmap(state)) return false;
  const bool spareHolds = state.spareRoom <= state.dcsqtOffset - static_cast<int>(kSpuHeaderSize);
  return SequencesCanMove(state) && spareHolds && -bytes <= state.spareRoom &&
         bytes <= state.freeRoom && state.TotalSize() + bytes <= kMaxSpuSize;
}

void MoveBytes(SpuState& state, int bytes) {
  const auto start = state.bytes.begin() + state.dcsqtOffset;
  if (bytes > 0) {
    state.bytes.insert(start, static_cast<std::size_t>(bytes), 0);
  } else {
    state.bytes.erase(start + bytes, start);
  }
  state.dcsqtOffset = Shifted(state.dcsqtOffset, bytes);
  PutShort(state.bytes, kSpuSizeOffset, static_cast<std::uint16_t>(state.TotalSize()));
  PutShort(state.bytes, kSpuDcsqtOffset, state.dcsqtOffset);
}

void MendSequences(SpuState& state, int bytes) {
  for (ControlSequence& sequence : state.sequences) {
    sequence.ownOffset = Shifted(sequence.ownOffset, bytes);
    sequence.nextOffset = Shifted(sequence.nextOffset, bytes);
    PutShort(state.bytes, sequence.ownOffset + kSequenceNextOffset, sequence.nextOffset);
    for (SpuCommand& command : sequence.commands) command.offset = Shifted(command.offset, bytes);
  }
  for (ColconTable& table : state.colconTables) {
    for (ColconBand& band : table.bands) {
      band.offset = Shifted(band.offset, bytes);
      for (ColconColumn& column : band.columns) column.offset = Shifted(column.offset, bytes);
    }
  }
}

}  // namespace

bool SequencesOverlap(const SpuState& state) {
  for (std::size_t i = 0; i + 1 < state.sequences.size(); ++i) {
    const auto& commands = state.sequences[i].commands;
    const bool ended = !commands.empty() && commands.back().code == kEndOfCommands;
    if (!ended || state.sequences[i + 1].ownOffset <= commands.back().offset) return true;
  }
  return false;
}

bool SequencesCanMove(const SpuState& state) {
  const bool headerHolds =
      state.dcsqtOffset >= kSpuHeaderSize && state.dcsqtOffset < state.bytes.size();
  return headerHolds && !SequencesOverlap(state) && !HasBitmapBehind(state);
}

int GrowthRoom(const SpuState& state) {
  if (!SequencesCanMove(state)) return 0;
  return std::max(std::min(state.freeRoom, kMaxSpuSize - state.TotalSize()), 0);
}

Result MakeRoom(SubpictureUnit& unit, int bytes, const SpuContext& context) {
  SpuState& state = unit.state;
  if (GrowthRoom(state) >= bytes) return Result::kDone;
  if (!state.decoded && Failed(DecodeBitmap(unit, context))) return Result::kFailed;
  const int missing = bytes - GrowthRoom(state);
  static_cast<void>(ShiftControlSequences(unit, -std::min(missing, state.spareRoom)));
  return GrowthRoom(state) >= bytes ? Result::kDone : Result::kFailed;
}

bool HasOtherBitmap(const SpuState& state) {
  return std::any_of(state.sequences.begin(), state.sequences.end(), [&](const auto& sequence) {
    const auto offsets = FieldOffsets(sequence);
    return offsets && *offsets != std::array{state.topOffset, state.bottomOffset};
  });
}

bool CodesBeginInHeader(const SpuState& state) {
  return std::min(state.topOffset, state.bottomOffset) < kSpuHeaderSize;
}

Result ShiftControlSequences(SubpictureUnit& unit, int bytes) {
  SpuState& state = unit.state;
  if (!CanShift(state, bytes)) return Result::kFailed;
  if (bytes == 0) return Result::kDone;
  MoveBytes(state, bytes);
  MendSequences(state, bytes);
  state.spareRoom += bytes;
  state.freeRoom -= bytes;
  return Result::kDone;
}

}  // namespace quillomar
