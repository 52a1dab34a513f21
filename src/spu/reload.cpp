#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/pack_reader.h"
#include "spu/parse.h"
#include "spu/unit_assembly.h"
#include "spu/write_back.h"

namespace quillomar {
namespace {

// A fresh state with the unit's bytes from its packs; the time is kept, for it is not read again.
SpuState FreshState(AssembledUnit& found, std::uint32_t pts) {
  SpuState state;
  state.pts = pts;
  state.freeRoom = found.assembly.FreeRoom(kReloadRoomReserve, found.freedPacks);
  state.bytes = found.assembly.TakeData();
  state.dcsqtOffset = GetShort(state.bytes, kSpuDcsqtOffset);
  return state;
}

}  // namespace

Result Reload(SubpictureUnit& unit, VobFileSet& set, const SpuContext& context) {
  std::vector<Sector> packs;
  const auto unreadable = ReadPacks(unit, set, packs);
  auto found = unreadable ? std::nullopt : Assemble(packs, unit.SubStreamId());
  if (!found) {
    context.reporter.ReportError("Failed to re-load enough data");
    return Result::kFailed;
  }
  SpuState before = std::move(unit.state);
  unit.state = FreshState(*found, before.pts);
  if (Failed(ParseControlSequences(unit, 0, unit.state.dcsqtOffset, context))) {
    unit.state = std::move(before);
    return Result::kFailed;
  }
  unit.ReleasePixels();
  const bool sequenceStays = unit.currentSequence < static_cast<int>(unit.state.sequences.size());
  SelectControlSequence(unit, sequenceStays ? unit.currentSequence : 0);
  return Result::kDone;
}

}  // namespace quillomar
