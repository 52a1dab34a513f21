#include "spu/visibility.h"

#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/edit_attempt.h"
#include "spu/rooms.h"

namespace quillomar {
namespace {

constexpr unsigned kColumnCountShift = 12;

bool IsStart(const SpuCommand& command) {
  return command.code == kStart || command.code == kForcedStart;
}

// Columns beyond those that the record holds are cleared as well: players may show them.
void ClearBand(SpuState& state, ColconBand& band) {
  for (ColconColumn& column : band.columns) column.alphas = {};
  const unsigned count =
      GetShort(state.bytes, band.offset + kBandBottomOffset) >> kColumnCountShift;
  std::size_t alphas = band.offset + kBandHeaderSize + kColumnAlphasOffset;
  for (unsigned i = 0; i < count; ++i, alphas += kColumnSize) PutShort(state.bytes, alphas, 0);
}

}  // namespace

Result SetForcedStart(SubpictureUnit& unit, bool forced) {
  SpuState& state = unit.state;
  if (!unit.complete || SequencesOverlap(state)) return Result::kFailed;
  const std::uint8_t code = forced ? kForcedStart : kStart;
  return AttemptEdit(unit, [&] {
    bool found = false;
    for (ControlSequence& sequence : state.sequences) {
      for (SpuCommand& command : sequence.commands) {
        if (!IsStart(command)) continue;
        found = true;
        command.code = code;
        state.bytes[command.offset] = code;
      }
    }
    return found ? Result::kDone : Result::kFailed;
  });
}

Result HideUnit(SubpictureUnit& unit) {
  SpuState& state = unit.state;
  if (!unit.complete || SequencesOverlap(state)) return Result::kFailed;
  return AttemptEdit(unit, [&] {
    for (ControlSequence& sequence : state.sequences) {
      for (SpuCommand& command : sequence.commands) {
        if (command.code != kSetContrast) continue;
        command.arguments = {};
        PutShort(state.bytes, command.offset + std::size_t{1}, 0);
      }
    }
    for (ColconTable& table : state.colconTables) {
      for (ColconBand& band : table.bands) ClearBand(state, band);
    }
    SelectControlSequence(unit, unit.currentSequence);
    return Result::kDone;
  });
}

}  // namespace quillomar
