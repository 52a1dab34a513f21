#include "dvd/pack.h"

#include <algorithm>

#include "dvd/big_endian.h"
#include "dvd/nav_pack.h"

namespace quillomar {
namespace {

constexpr std::uint8_t kScramblingBits = 0x30;
constexpr unsigned kAudioStreams = 8;

bool IsInRange(std::uint8_t id, std::uint8_t first, unsigned count) {
  return id >= first && id < first + count;
}

PackInfo ClassifyPrivateStream(SectorView sector) {
  const std::size_t idOffset = kPesHeaderDataOffset + sector[kPesHeaderLengthOffset];
  const std::uint8_t id = sector[idOffset];
  if (IsInRange(id, kFirstSubpictureId, kSubpictureStreams)) return {PackKind::kSubpicture, id};
  if (IsInRange(id, kFirstAc3Id, kAudioStreams) || IsInRange(id, kFirstLpcmId, kAudioStreams)) {
    return {PackKind::kAudio, 0};
  }
  return {};
}

// A marker bit follows each of the three groups of a 33-bit count: 3 bits, 15 bits, 15 bits.
std::uint64_t JoinGroups(std::uint64_t high, std::uint64_t middle, std::uint64_t low) {
  return (high & 0x7) << 30 | (middle & 0x7FFF) << 15 | (low & 0x7FFF);
}

}  // namespace

PackInfo ClassifyPack(SectorView sector) {
  switch (GetInt(sector, kPesStartOffset)) {
    case kVideoStream:
      return {PackKind::kVideo, 0};
    case 0:
      return {PackKind::kEmpty, 0};
    case kPaddingStream:
      return {PackKind::kPadding, 0};
    case kPrivateStream1:
      return ClassifyPrivateStream(sector);
    default:
      break;
  }
  const bool isNav = GetInt(sector, kPciPacketOffset) == kPrivateStream2 &&
                     GetInt(sector, kDsiPacketOffset) == kPrivateStream2;
  return {isNav ? PackKind::kNav : PackKind::kOther, 0};
}

ClockReference GetClockReference(SectorView sector) {
  // Two marker bits 01, then 3 + 1, 15 + 1, 15 + 1 and 9 + 1 bits: 48 in all.
  const std::uint64_t high = GetShort(sector, kClockReferenceOffset);
  const std::uint64_t bits = high << 32 | GetInt(sector, kClockReferenceOffset + 2);
  return {JoinGroups(bits >> 43, bits >> 27, bits >> 11),
          static_cast<std::uint16_t>(bits >> 1 & 0x1FF)};
}

void PutClockReference(std::span<std::uint8_t, kSectorSize> sector, ClockReference reference) {
  const std::uint64_t base = reference.base;
  const std::uint64_t markers = 0x4400'0400'0401;
  const std::uint64_t bits = markers | (base >> 30 & 0x7) << 43 | (base >> 15 & 0x7FFF) << 27 |
                             (base & 0x7FFF) << 11 | (reference.extension & 0x1FFULL) << 1;
  PutShort(sector, kClockReferenceOffset, static_cast<std::uint16_t>(bits >> 32));
  PutInt(sector, kClockReferenceOffset + 2, static_cast<std::uint32_t>(bits));
}

bool IsScrambled(SectorView sector) {
  return (sector[kPesFlagsOffset] & kScramblingBits) != 0;
}

std::uint64_t GetTimeStamp(std::span<const std::uint8_t> field) {
  if (field.size() < kTimeStampSize) return 0;
  return JoinGroups(field[0] >> 1, GetShort(field, 1) >> 1, GetShort(field, 3) >> 1);
}

void PutTimeStamp(std::span<std::uint8_t> field, std::uint32_t ticks) {
  if (field.size() < kTimeStampSize) return;
  const std::uint8_t prefix = 0x20;
  const std::uint8_t bit32 = field[0] & 0x08;
  field[0] = static_cast<std::uint8_t>(prefix | bit32 | (ticks >> 30) << 1 | 1);
  PutShort(field, 1, static_cast<std::uint16_t>((ticks >> 15 & 0x7FFF) << 1 | 1));
  PutShort(field, 3, static_cast<std::uint16_t>((ticks & 0x7FFF) << 1 | 1));
}

std::span<const std::uint8_t> PesPayload(SectorView sector) {
  const std::size_t begin = kPesHeaderDataOffset + sector[kPesHeaderLengthOffset];
  const std::size_t length = GetShort(sector, kPesLengthOffset);
  const std::size_t end = std::min(kSectorSize, kPesFlagsOffset + length);
  return begin < end ? sector.subspan(begin, end - begin) : std::span<const std::uint8_t>();
}

}  // namespace quillomar
