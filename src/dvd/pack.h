#pragma once

#include <cstdint>
#include <span>

#include "dvd/sector.h"

// MPEG-2 program stream pack of a DVD: a 14-byte pack header without stuffing, then one PES packet.
namespace quillomar {

inline constexpr std::size_t kPackHeaderSize = 14;
inline constexpr std::size_t kClockReferenceOffset = 4;  // 6 bytes with marker bits
inline constexpr std::size_t kClockReferenceSize = 6;
inline constexpr std::size_t kPesStartOffset = 14;   // u32 start code
inline constexpr std::size_t kPesLengthOffset = 18;  // u16, bytes after this field
inline constexpr std::size_t kPesFlagsOffset = 20;   // bits 4-5: scrambling
inline constexpr std::size_t kPesFlags2Offset = 21;  // bit 7: a PTS is present
inline constexpr std::size_t kPesHeaderLengthOffset = 22;
inline constexpr std::size_t kPesHeaderDataOffset = 23;  // PTS first, when present

inline constexpr std::uint32_t kPrivateStream1 = 0x000001BD;
inline constexpr std::uint32_t kPaddingStream = 0x000001BE;
inline constexpr std::uint32_t kPrivateStream2 = 0x000001BF;
inline constexpr std::uint32_t kVideoStream = 0x000001E0;

inline constexpr int kSubpictureStreams = 32;
inline constexpr std::uint8_t kFirstSubpictureId = 0x20;
inline constexpr std::uint8_t kFirstAc3Id = 0x80;  // 8 streams, as have the other two
inline constexpr std::uint8_t kFirstLpcmId = 0xA0;

enum class PackKind {
  kOther = 0,
  kNav = 1,
  kVideo = 2,
  kAudio = 3,
  kSubpicture = 4,
  kPadding = 5,
  kEmpty = 6,
};

struct PackInfo {
  PackKind kind = PackKind::kOther;
  std::uint8_t subStreamId = 0;  // of subpicture packs: 0x20 to 0x3F
};

[[nodiscard]] PackInfo ClassifyPack(SectorView sector);

// System clock reference: a 33-bit count of 90 kHz and 0 to 299 periods of 27 MHz.
struct ClockReference {
  std::uint64_t base = 0;
  std::uint16_t extension = 0;
};
[[nodiscard]] ClockReference GetClockReference(SectorView sector);
void PutClockReference(std::span<std::uint8_t, kSectorSize> sector, ClockReference reference);

// True when the PES packet of private stream 1 says that its payload is scrambled.
[[nodiscard]] bool IsScrambled(SectorView sector);

inline constexpr std::size_t kTimeStampSize = 5;
// The 33-bit time stamp in five bytes of PES header data; 0 when there are fewer bytes.
[[nodiscard]] std::uint64_t GetTimeStamp(std::span<const std::uint8_t> field);
// Writes the low 32 bits of a time stamp with the marker prefix 0010; bit 32 stays as it stands in
// the field. Does nothing when the field has fewer than five bytes.
void PutTimeStamp(std::span<std::uint8_t> field, std::uint32_t ticks);

// Payload of a PES packet of private stream 1 or video, cut at the sector's end; empty when the
// header leaves no room.
[[nodiscard]] std::span<const std::uint8_t> PesPayload(SectorView sector);

}  // namespace quillomar
