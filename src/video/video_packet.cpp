#include "video/video_packet.h"

#include "dvd/pack.h"

namespace quillomar {

std::optional<std::uint32_t> PacketTime(SectorView pack) {
  constexpr std::uint8_t kHasTimeStamp = 0x80;
  const bool present = (pack[kPesFlags2Offset] & kHasTimeStamp) != 0 &&
                       pack[kPesHeaderLengthOffset] >= kTimeStampSize;
  if (!present) return std::nullopt;
  return static_cast<std::uint32_t>(
      GetTimeStamp(pack.subspan(kPesHeaderDataOffset, kTimeStampSize)));
}

ByteSpan VideoBytes(SectorView pack) {
  if (ClassifyPack(pack).kind != PackKind::kVideo || IsScrambled(pack)) return {};
  return PesPayload(pack);
}

}  // namespace quillomar
