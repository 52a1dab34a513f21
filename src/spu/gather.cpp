#include "spu/gather.h"

#include <algorithm>

#include "base/format.h"
#include "base/paths.h"
#include "dvd/big_endian.h"
#include "dvd/vob_name.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"

namespace quillomar {
namespace {

// What the offset of the first control sequence becomes when it lies outside the unit.
constexpr std::uint16_t kNoSequenceOffset = 0xFFFF;

const char* const kScrambledText =
    "Some subpicture packs are scrambled.\n"
    "Their subpics can't be read properly and won't be written.";

std::string StreamName(Vcid vcid, int stream) {
  return Format("VCID: %d/%d StreamID 0x%x", vcid.vobId, vcid.cellId,
                static_cast<unsigned>(kFirstSubpictureId + stream));
}

SpuPack PackAt(const PackContext& place) {
  return {place.fileIndex, place.lbaInFile, place.lba};
}

void NotePadding(SectorView pack, const UnitAssembly& assembly, const PackContext& place,
                 const SpuContext& context) {
  if (StatedSpuBytes(pack) == assembly.Expected(pack)) return;
  context.reporter.LogLine(
      Format("NOTE: There's probably a padding stream in the middle of the subpic data at LBA %u",
             place.lba));
}

// Scrambled data hardly ever parses; its one message is enough.
Result ParseScrambled(SubpictureUnit& unit, const SpuContext& context) {
  ReportLimit silent(context.reporter);
  silent.Silence();
  return ParseControlSequences(unit, 0, unit.state.dcsqtOffset,
                               {context.reporter, silent, context.standard});
}

}  // namespace

void SpuGatherer::Reset() {
  unit_ = SubpictureUnit();
  assembly_ = UnitAssembly();
  inProgress_ = false;
}

std::string SpuGatherer::Name(int number, const SpuPack& pack) const {
  const auto& files = set_.Files();
  const auto index = static_cast<std::size_t>(pack.fileIndex);
  std::optional<int> piece;
  if (index < files.size()) piece = ParseVobTitle(SplitPath(files[index].path).title).piece;
  return Format("SPU # %d starting at LBA %u (LBA %u of VTS_XX_%d.VOB)", number, pack.lba,
                pack.lbaInFile, piece.value_or(pack.fileIndex + 1));
}

void SpuGatherer::TakeButtons(const PackContext& place) {
  const int known = static_cast<int>(unit_.highlight.buttons.size());
  const int count = std::min(std::max(known, place.buttonCount), kMaxButtons);
  if (count == 0 || place.highlight == nullptr) return;
  unit_.highlight = *place.highlight;
  unit_.highlight.buttons.resize(static_cast<std::size_t>(count));
}

GatherResult SpuGatherer::GatherPack(SectorView pack, const PackContext& place,
                                     const SpuContext& context) {
  if (inProgress_ && !IsPaddingPack(pack) && BeginsUnit(pack)) {
    context.limit.Report(Name(unit_.number, unit_.packs.front()) +
                         " is incomplete! Dropping it...\n" + StreamName(unit_.vcid, unit_.stream));
    Reset();
  }
  if (IsPaddingPack(pack) && !inProgress_) return GatherResult::kNeedMore;
  if (!inProgress_) {
    if (skipsRest_ && !BeginsUnit(pack)) return GatherResult::kNeedMore;
    skipsRest_ = false;
    if (!HasTimeStamp(pack)) return RefuseStart(place, context);
    if (!BeginUnit(pack, place, context)) return GatherResult::kFailed;
  } else if (unit_.packs.size() == kMaxSpuPacks) {
    return RefuseSize(context);
  }
  return AddPack(pack, place, context);
}

GatherResult SpuGatherer::RefuseStart(const PackContext& place, const SpuContext& context) {
  context.reporter.LogLine(Format("Len is zero or there's no PTS at LBA %u!", place.lba));
  context.limit.Report("Serious error while reading " + Name(place.unitNumber + 1, PackAt(place)) +
                       "\nReplacing with a stuffing pack...\n" +
                       StreamName(place.vcid, place.stream));
  return GatherResult::kFailed;
}

GatherResult SpuGatherer::RefuseSize(const SpuContext& context) {
  context.limit.Report(Name(unit_.number, unit_.packs.front()) +
                       Format(" needs more than %d packs! Dropping it...\n", kMaxSpuPacks) +
                       StreamName(unit_.vcid, unit_.stream));
  Reset();
  skipsRest_ = true;
  return GatherResult::kFailed;
}

bool SpuGatherer::BeginUnit(SectorView pack, const PackContext& place, const SpuContext& context) {
  Reset();
  const ByteSpan payload = SpuBytes(pack);
  const std::uint16_t offset = GetShort(payload, kSpuDcsqtOffset);
  const bool offsetHolds = offset < GetShort(payload, kSpuSizeOffset);
  const bool begun = !Failed(assembly_.Begin(pack));
  if (!begun || !offsetHolds) {
    context.limit.Report(Format(
        "Inconsistent data in subpic at LBA %u. Offset to commands past end of SPU", place.lba));
  }
  if (!begun) return false;
  unit_.state.dcsqtOffset = offsetHolds ? offset : kNoSequenceOffset;
  unit_.state.pts =
      static_cast<std::uint32_t>(GetTimeStamp(ByteSpan(pack).subspan(kPesHeaderDataOffset)));
  unit_.ptsAsRead = unit_.state.pts;
  std::copy_n(pack.begin(), kFirstHeaderSize, unit_.firstHeader.begin());
  unit_.navLba = place.navLba;
  unit_.vcid = place.vcid;
  unit_.stream = place.stream;
  unit_.number = place.unitNumber + 1;
  inProgress_ = true;
  return true;
}

GatherResult SpuGatherer::AddPack(SectorView pack, const PackContext& place,
                                  const SpuContext& context) {
  unit_.packs.push_back(PackAt(place));
  unit_.packs.back().payloadSum = PayloadSum(pack);
  if (IsPaddingPack(pack)) return GatherResult::kNeedMore;
  TakeButtons(place);
  if (IsScrambled(pack)) {
    unit_.scrambled = true;
    context.limit.ReportOnce(kScrambledText);
  }
  NotePadding(pack, assembly_, place, context);
  assembly_.Add(pack);
  return assembly_.Whole() ? FinishUnit(context) : GatherResult::kNeedMore;
}

GatherResult SpuGatherer::FinishUnit(const SpuContext& context) {
  inProgress_ = false;
  unit_.state.freeRoom = assembly_.FreeRoom(kRoomReserve, 0);
  unit_.state.bytes = assembly_.TakeData();
  unit_.complete = true;
  const Result parsed = unit_.scrambled
                            ? ParseScrambled(unit_, context)
                            : ParseControlSequences(unit_, 0, unit_.state.dcsqtOffset, context);
  if (Failed(parsed)) {
    Reset();
    return GatherResult::kFailed;
  }
  SelectControlSequence(unit_, unit_.currentSequence);
  return GatherResult::kComplete;
}

}  // namespace quillomar
