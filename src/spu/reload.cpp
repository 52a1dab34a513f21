#include "spu/reload.h"

#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/pack_reader.h"
#include "spu/parse.h"
#include "spu/spu_pack.h"
#include "spu/unit_assembly.h"
#include "spu/write_back.h"

namespace quillomar {

Result ReportReloadFailure(const SpuContext& context) {
  context.reporter.ReportError("Failed to re-load enough data");
  return Result::kFailed;
}

Result TakeBytesAgain(SubpictureUnit& unit, Bytes bytes, int freeRoom, const SpuContext& context) {
  SpuState before = std::move(unit.state);
  unit.state = SpuState();
  unit.state.pts = before.pts;
  unit.state.freeRoom = freeRoom;
  unit.state.bytes = std::move(bytes);
  if (Failed(ParseControlSequences(unit, 0, 0, context))) {
    unit.state = std::move(before);
    return Result::kFailed;
  }
  unit.ReleasePixels();
  unit.MarkBoxesStale();
  const bool sequenceStays = unit.currentSequence < static_cast<int>(unit.state.sequences.size());
  SelectControlSequence(unit, sequenceStays ? unit.currentSequence : 0);
  return Result::kDone;
}

Result Reload(SubpictureUnit& unit, VobFileSet& set, const SpuContext& context) {
  std::vector<Sector> packs;
  const auto unreadable = ReadPacks(unit, set, packs);
  auto found = unreadable ? std::nullopt : Assemble(packs, unit.SubStreamId());
  if (!found) return ReportReloadFailure(context);
  const int freeRoom = found->assembly.FreeRoom(kReloadRoomReserve, found->freedPacks);
  if (Failed(TakeBytesAgain(unit, found->assembly.TakeData(), freeRoom, context))) {
    return Result::kFailed;
  }
  for (std::size_t i = 0; i < packs.size(); ++i) unit.packs[i].payloadSum = PayloadSum(packs[i]);
  return Result::kDone;
}

}  // namespace quillomar
