#include "video/vobu_walk.h"

#include <algorithm>

#include "dvd/big_endian.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"

namespace quillomar {
namespace {

// Far more than a VOBU of a second at the highest rate.
constexpr std::uint32_t kSearchedSectors = 4096;
constexpr std::uint32_t kBlockSectors = 32;

std::optional<std::uint32_t> ReadPointer(SectorView sector, std::size_t offset) {
  const std::uint32_t distance = GetInt(sector, offset) & kNavDistanceMask;
  if (distance == kNavNoDistance || distance == 0) return std::nullopt;
  return distance;
}

VobuMark MakeMark(SectorView sector, std::uint32_t lba) {
  const NavPack nav = ParseNavPack(sector);
  return {lba,
          nav.startTime,
          nav.endTime,
          nav.vcid,
          ReadPointer(sector, kNavNextVobuOffset),
          ReadPointer(sector, kNavPreviousVobuOffset)};
}

bool SameClock(const VobuMark& earlier, const VobuMark& later) {
  return earlier.vcid.vobId == later.vcid.vobId &&
         TicksBetween(earlier.startTime, later.startTime) > 0;
}

}  // namespace

std::optional<VobuMark> VobuWalk::MarkAt(std::uint32_t lba) {
  Sector sector;
  if (reader_.Read(lba, sector) == 0 || ClassifyPack(sector).kind != PackKind::kNav) {
    return std::nullopt;
  }
  return MakeMark(sector, lba);
}

std::optional<VobuMark> VobuWalk::At(std::uint32_t lba) {
  if (lba >= reader_.TotalSectors()) return std::nullopt;
  const auto here = MarkAt(lba);
  return here ? here : Before(lba);
}

std::optional<VobuMark> VobuWalk::After(std::uint32_t lba) {
  SectorCursor cursor(reader_, lba + 1);
  for (std::uint32_t i = 0; i < kSearchedSectors; ++i) {
    const std::uint8_t* const bytes = cursor.Next();
    if (bytes == nullptr) return std::nullopt;
    const SectorView sector(bytes, kSectorSize);
    if (ClassifyPack(sector).kind == PackKind::kNav) return MakeMark(sector, cursor.Lba() - 1);
  }
  return std::nullopt;
}

std::optional<VobuMark> VobuWalk::Before(std::uint32_t lba) {
  std::vector<std::uint8_t> block(kBlockSectors * kSectorSize);
  const std::uint32_t lowest = lba - std::min(lba, kSearchedSectors);
  while (lba > lowest) {
    const std::uint32_t first = lba - std::min(lba - lowest, kBlockSectors);
    const auto asked = std::span(block).first((lba - first) * kSectorSize);
    std::uint32_t count = reader_.Read(first, asked);
    // The block begins in the piece before.
    const std::uint32_t missing = lba - first - count;
    if (missing > 0) count += reader_.Read(first + count, asked.last(missing * kSectorSize));
    for (std::uint32_t i = count; i-- > 0;) {
      const auto sector = asked.subspan(i * kSectorSize).first<kSectorSize>();
      if (ClassifyPack(sector).kind == PackKind::kNav) return MakeMark(sector, first + i);
    }
    lba = first;
  }
  return std::nullopt;
}

std::optional<VobuMark> VobuWalk::NextInVob(const VobuMark& vobu) {
  auto next = vobu.next ? MarkAt(vobu.lba + *vobu.next) : std::nullopt;
  if (!next || !SameClock(vobu, *next)) next = After(vobu.lba);
  return next && SameClock(vobu, *next) ? next : std::nullopt;
}

std::optional<VobuMark> VobuWalk::PreviousInVob(const VobuMark& vobu) {
  const bool within = vobu.previous && *vobu.previous <= vobu.lba;
  auto previous = within ? MarkAt(vobu.lba - *vobu.previous) : std::nullopt;
  if (!previous || !SameClock(*previous, vobu)) previous = Before(vobu.lba);
  return previous && SameClock(*previous, vobu) ? previous : std::nullopt;
}

}  // namespace quillomar
