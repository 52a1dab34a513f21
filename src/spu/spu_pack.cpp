#include "spu/spu_pack.h"

#include <algorithm>

#include "base/checksum.h"
#include "dvd/big_endian.h"

namespace quillomar {
namespace {

constexpr std::uint8_t kTimeStampFlag = 0x80;

}  // namespace

int HeaderDataLength(ByteSpan pack) {
  return GetByte(pack, kPesHeaderLengthOffset);
}

int PackRoom(int headerDataLength) {
  return kMaxPackRoom - headerDataLength;
}

int StatedSpuBytes(SectorView pack) {
  return GetShort(pack, kPesLengthOffset) - kPesLengthBase - HeaderDataLength(pack);
}

ByteSpan SpuBytes(SectorView pack) {
  const int header = HeaderDataLength(pack);
  const int count = std::clamp(StatedSpuBytes(pack), 0, PackRoom(header));
  return ByteSpan(pack).subspan(kSpuDataOffset + static_cast<std::size_t>(header),
                                static_cast<std::size_t>(count));
}

bool IsPaddingPack(SectorView pack) {
  return GetInt(pack, kPesStartOffset) == kPaddingStream;
}

bool IsPackOfStream(SectorView pack, std::uint8_t subStreamId) {
  const PackInfo info = ClassifyPack(pack);
  return info.kind == PackKind::kSubpicture && info.subStreamId == subStreamId;
}

bool BeginsUnit(SectorView pack) {
  return HeaderDataLength(pack) > 0 && (GetByte(pack, kPesFlags2Offset) & kTimeStampFlag) != 0;
}

bool HasTimeStamp(SectorView pack) {
  return BeginsUnit(pack) && HeaderDataLength(pack) >= static_cast<int>(kTimeStampSize);
}

std::uint64_t PayloadSum(SectorView pack) {
  const std::size_t headers =
      kPesHeaderDataOffset + static_cast<std::size_t>(HeaderDataLength(pack));
  return Checksum(ByteSpan(pack).subspan(IsPaddingPack(pack) ? kPesStartOffset : headers));
}

}  // namespace quillomar
