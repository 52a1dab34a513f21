#pragma once

#include <cstdint>
#include <span>

#include "base/file.h"
#include "dvd/pack.h"

// A pack that carries bytes of a subpicture unit: private stream 1 with h bytes of PES header data.
//
//   23 + h  u8   sub-stream id
//   24 + h  ...  bytes of the unit; the PES length says how many (h + 4 + bytes)
//
// What the unit leaves free is a padding stream: start code, u16 length, 0xFF bytes.
namespace quillomar {

// Start of the unit's bytes in a pack without PES header data.
inline constexpr std::size_t kSpuDataOffset = 24;
// PES length beyond header data and unit bytes: two flag bytes, the header length, the stream id.
inline constexpr int kPesLengthBase = 4;
// Most bytes of a unit in one pack without PES header data.
inline constexpr int kMaxPackRoom = static_cast<int>(kSectorSize - kSpuDataOffset);

inline constexpr int kPaddingHeaderSize = 6;
inline constexpr std::size_t kPaddingLengthOffset = 4;  // from the padding stream's start code
inline constexpr std::uint8_t kPaddingByte = 0xFF;

using MutableSector = std::span<std::uint8_t, kSectorSize>;

// h: bytes of PES header data.
[[nodiscard]] int HeaderDataLength(ByteSpan pack);
// Bytes of a unit that the pack can carry beside its header data.
[[nodiscard]] int PackRoom(int headerDataLength);
// Bytes of a unit that the pack carries by its PES length; negative where that is too short for the
// header data.
[[nodiscard]] int StatedSpuBytes(SectorView pack);
// The bytes of a unit in the pack, by its PES length and never beyond its end.
[[nodiscard]] ByteSpan SpuBytes(SectorView pack);

[[nodiscard]] bool IsPaddingPack(SectorView pack);
[[nodiscard]] bool IsPackOfStream(SectorView pack, std::uint8_t subStreamId);
// PES header data with the time stamp flag set: the first pack of a unit.
[[nodiscard]] bool BeginsUnit(SectorView pack);
// Checksum of what the pack carries, its headers left out: a pack may be moved in between and get
// another time.
[[nodiscard]] std::uint64_t PayloadSum(SectorView pack);
// The header data with room for a time stamp, flagged as one.
[[nodiscard]] bool HasTimeStamp(SectorView pack);

}  // namespace quillomar
