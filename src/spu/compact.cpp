#include "spu/compact.h"

#include <algorithm>
#include <numeric>

#include "dvd/big_endian.h"
#include "spu/pack_filler.h"
#include "spu/parse.h"
#include "spu/rooms.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// Codes of one field, from its first byte to the byte after its last.
struct FieldRange {
  int begin = 0;
  int end = 0;
  [[nodiscard]] int Size() const { return end - begin; }
};

void WriteFieldOffsets(SpuState& state) {
  for (ControlSequence& sequence : state.sequences) {
    for (SpuCommand& command : sequence.commands) {
      if (command.code != kSetFieldOffsets) continue;
      command.arguments = {state.topOffset, state.bottomOffset};
      const std::size_t arguments = command.offset + 1U;
      PutShort(state.bytes, arguments, state.topOffset);
      PutShort(state.bytes, arguments + sizeof(std::uint16_t), state.bottomOffset);
    }
  }
}

// Players read the top field first. After an odd move the field that was the bottom one stands
// behind; fields that share bytes cannot be taken apart and stay.
void SwapFields(SpuState& state) {
  const FieldRange top{state.topOffset, state.statistics.fieldEnds[0]};
  const FieldRange bottom{state.bottomOffset, state.statistics.fieldEnds[1]};
  const bool apart = bottom.end <= top.begin && top.end <= state.dcsqtOffset;
  if (bottom.begin >= top.begin || !apart || HasOtherBitmap(state)) return;

  Bytes codes;
  const auto append = [&](FieldRange range) {
    codes.insert(codes.end(), state.bytes.begin() + range.begin, state.bytes.begin() + range.end);
  };
  append(top);
  append(bottom);
  std::copy(codes.begin(), codes.end(), state.bytes.begin() + bottom.begin);
  state.topOffset = static_cast<std::uint16_t>(bottom.begin);
  state.bottomOffset = static_cast<std::uint16_t>(bottom.begin + top.Size());
  state.spareRoom = state.dcsqtOffset - (state.bottomOffset + bottom.Size());
  WriteFieldOffsets(state);
}

}  // namespace

Result Compact(SubpictureUnit& unit, std::span<const int> headerLengths,
               const SpuContext& context) {
  SpuState& state = unit.state;
  // Rooms and field ends are taken from the bytes as they stand: a move has hidden rows, and what
  // an earlier decode found may be from before an edit.
  state.decoded = false;
  if (Failed(ParseControlSequences(unit, 0, state.dcsqtOffset, context))) return Result::kFailed;
  const bool movable = !Failed(DecodeBitmap(unit, context)) && !CodesBeginInHeader(state);
  if (movable) SwapFields(state);

  const int removable = movable && !HasOtherBitmap(state) ? state.spareRoom : 0;
  const int filler = FillerBytes(headerLengths, state.TotalSize() - removable);
  const int capacity =
      std::accumulate(headerLengths.begin(), headerLengths.end(), 0,
                      [](int sum, int headerLength) { return sum + PackRoom(headerLength); });
  // The last pack's reserve for a padding stream may be used up to close the gap.
  state.freeRoom = std::max(capacity - state.TotalSize(), 0);
  if (Failed(ShiftControlSequences(unit, filler - removable))) {
    // A unit of the largest size, or with sequences that cannot be moved, keeps its gap.
    static_cast<void>(ShiftControlSequences(unit, -removable));
  }
  return Result::kDone;
}

}  // namespace quillomar
