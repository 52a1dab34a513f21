#include "spu/write_back.h"

#include <algorithm>
#include <optional>

#include "base/format.h"
#include "spu/compact.h"
#include "spu/pack_filler.h"
#include "spu/pack_reader.h"
#include "spu/spu_pack.h"
#include "spu/unit_assembly.h"

namespace quillomar {
namespace {

std::span<std::uint8_t> TimeStampOf(std::span<std::uint8_t> header) {
  const auto length = static_cast<std::size_t>(HeaderDataLength(header));
  const auto field = header.subspan(kPesHeaderDataOffset);
  return field.first(std::min(length, kTimeStampSize));
}

// The kept header follows the unit's time. A stamp that already says so stays bit for bit.
void FollowTime(SubpictureUnit& unit) {
  const auto field = TimeStampOf(unit.firstHeader);
  if (static_cast<std::uint32_t>(GetTimeStamp(field)) == unit.state.pts) return;
  PutTimeStamp(field, unit.state.pts);
}

bool SameTime(const SubpictureUnit& unit, Sector first) {
  return static_cast<std::uint32_t>(GetTimeStamp(TimeStampOf(first))) == unit.state.pts;
}

// A unit that its packs already hold is left to the byte as it stands there: its author may have
// spread and padded it in another way than this program does, and kept spare bytes in it. Neither
// is worth a write.
bool PacksHold(std::span<const Sector> packs, const SubpictureUnit& unit, const Bytes& bytes) {
  const auto held = Assemble(packs, unit.SubStreamId());
  return held && !held->leftovers && held->assembly.Data() == bytes &&
         SameTime(unit, packs.front());
}

// Refuses, before the first write, packs that are not what was gathered.
Result CheckPacks(const SubpictureUnit& unit, std::span<const Sector> packs,
                  const SpuContext& context) {
  for (std::size_t i = 0; i < packs.size(); ++i) {
    const SectorView pack = packs[i];
    const bool reusable = i > 0 && IsPaddingPack(pack);
    const bool ofStream = IsPackOfStream(pack, unit.SubStreamId()) && !IsScrambled(pack);
    if ((reusable || ofStream) && IsAsRead(unit.packs[i], pack)) continue;
    context.reporter.ReportError(
        Format("The %d-th subpic pack at LBA %u has changed or is scrambled.\n"
               "Subpic %d was not saved.\n",
               static_cast<int>(i) + 1, unit.packs[i].lba, unit.number));
    return Result::kFailed;
  }
  return Result::kDone;
}

// Headers as they are to be written: the first as kept, no header data in packs that were freed.
std::vector<int> PrepareHeaders(const SubpictureUnit& unit, std::vector<Sector>& packs) {
  std::copy(unit.firstHeader.begin(), unit.firstHeader.end(), packs.front().begin());
  std::vector<int> lengths;
  for (Sector& pack : packs) {
    if (IsPaddingPack(pack)) MakeContinuationPack(pack, unit.firstHeader[kPesFlagsOffset]);
    lengths.push_back(HeaderDataLength(pack));
  }
  return lengths;
}

// The unit as it is to be written; the unit itself keeps its edits until it is loaded again.
// Nothing for one that could not be read again.
std::optional<SpuState> CompactedState(const SubpictureUnit& unit,
                                       std::span<const int> headerLengths,
                                       const SpuContext& context) {
  SubpictureUnit copy;
  copy.state = unit.state;
  copy.packs = unit.packs;
  copy.number = unit.number;
  copy.complete = unit.complete;
  if (Failed(Compact(copy, headerLengths, context))) return std::nullopt;
  return std::move(copy.state);
}

Result CheckRoom(const SubpictureUnit& unit, int size, std::span<const int> headerLengths,
                 const SpuContext& context) {
  int room = 0;
  for (const int length : headerLengths) room += PackRoom(length);
  if (size <= room) return Result::kDone;
  context.reporter.ReportError(
      Format("Subpic %d at LBA %u needs more room than its packs have. It was not saved.\n",
             unit.number, unit.Lba()));
  return Result::kFailed;
}

void FillPacks(const SubpictureUnit& unit, ByteSpan data, std::vector<Sector>& packs,
               const SpuContext& context) {
  for (std::size_t i = 0; i < packs.size(); ++i) {
    if (data.empty()) {
      MakePaddingPack(packs[i]);
      continue;
    }
    const bool last = i + 1 == packs.size();
    const PackFill fill = FillPack(packs[i], data, unit.SubStreamId(), last);
    data = data.subspan(fill.taken);
    if (!fill.zeroFilled) continue;
    context.reporter.LogLine(
        Format("Warning: Not enough room at LBA %u for padding stream", unit.packs[i].lba));
  }
}

Result WritePacks(const SubpictureUnit& unit, const std::vector<Sector>& packs, VobFileSet& set,
                  WriteTransaction& transaction, const SpuContext& context) {
  for (std::size_t i = 0; i < packs.size(); ++i) {
    const std::uint32_t lba = unit.packs[i].lba;
    if (!Failed(set.WriteSectors(transaction, lba, packs[i]))) continue;
    context.reporter.ReportError(
        Format("Failed to write %d-th subpic pack at LBA %u\n", static_cast<int>(i) + 1, lba));
    return Result::kFailed;
  }
  return Result::kDone;
}

Result RefuseScrambled(const SubpictureUnit& unit, const SpuContext& context) {
  context.reporter.ReportError(
      Format("Subpic %d at LBA %u is scrambled. It was not saved.\n", unit.number, unit.Lba()));
  return Result::kFailed;
}

}  // namespace

Result WriteBack(SubpictureUnit& unit, VobFileSet& set, WriteTransaction& transaction,
                 const SpuContext& context) {
  if (unit.scrambled) return RefuseScrambled(unit, context);
  std::vector<Sector> packs;
  if (const auto failed = ReadPacks(unit, set, packs)) {
    context.reporter.ReportError(Format("Failed to seek/read %d-th subpic pack at LBA %u\n",
                                        static_cast<int>(*failed) + 1, unit.packs[*failed].lba));
    return Result::kFailed;
  }
  if (packs.empty()) return CheckRoom(unit, unit.state.TotalSize(), {}, context);
  if (Failed(CheckPacks(unit, packs, context))) return Result::kFailed;
  FollowTime(unit);
  if (PacksHold(packs, unit, unit.state.bytes)) return Result::kDone;

  const std::vector<Sector> found = packs;
  const std::vector<int> headerLengths = PrepareHeaders(unit, packs);
  const auto compacted = CompactedState(unit, headerLengths, context);
  if (!compacted) return Result::kFailed;
  const Bytes& bytes = compacted->bytes;
  if (Failed(CheckRoom(unit, compacted->TotalSize(), headerLengths, context))) {
    return Result::kFailed;
  }
  if (PacksHold(found, unit, bytes)) return Result::kDone;
  FillPacks(unit, bytes, packs, context);
  return WritePacks(unit, packs, set, transaction, context);
}

}  // namespace quillomar
