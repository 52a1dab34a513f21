#include "spu/pack_filler.h"

#include <algorithm>

#include "dvd/big_endian.h"

namespace quillomar {
namespace {

constexpr std::uint8_t kStuffingByte = 0xFF;
// PES header data with stuffing stays below this.
constexpr int kStuffedHeaderLimit = 16;

bool CanStuff(int headerLength, int gap, bool last) {
  return !last && gap + headerLength < kStuffedHeaderLimit;
}

void PutPaddingStream(std::span<std::uint8_t> rest) {
  PutInt(rest, 0, kPaddingStream);
  PutShort(rest, kPaddingLengthOffset,
           static_cast<std::uint16_t>(rest.size() - kPaddingHeaderSize));
  std::fill(rest.begin() + kPaddingHeaderSize, rest.end(), kPaddingByte);
}

void StuffHeader(MutableSector pack, int gap) {
  const int header = HeaderDataLength(pack);
  const auto stuffing = pack.subspan(kPesHeaderDataOffset + static_cast<std::size_t>(header));
  std::fill_n(stuffing.begin(), gap, kStuffingByte);
  pack[kPesHeaderLengthOffset] = static_cast<std::uint8_t>(header + gap);
}

// Stream id, the unit's bytes and the PES length behind the header as it stands; returns the rest
// of the pack.
std::span<std::uint8_t> PutData(MutableSector pack, ByteSpan data, std::uint8_t subStreamId) {
  const auto header = static_cast<std::size_t>(HeaderDataLength(pack));
  pack[kPesHeaderDataOffset + header] = subStreamId;
  const auto room = pack.subspan(kSpuDataOffset + header);
  std::copy(data.begin(), data.end(), room.begin());
  PutShort(pack, kPesLengthOffset,
           static_cast<std::uint16_t>(header + kPesLengthBase + data.size()));
  return room.subspan(data.size());
}

}  // namespace

PackFill FillPack(MutableSector pack, ByteSpan data, std::uint8_t subStreamId, bool last) {
  const int headerLength = HeaderDataLength(pack);
  const auto room = static_cast<std::size_t>(PackRoom(headerLength));
  const ByteSpan part = data.first(std::min(data.size(), room));
  const int gap = static_cast<int>(room - part.size());
  if (gap > 0 && gap < kPaddingHeaderSize && CanStuff(headerLength, gap, last)) {
    StuffHeader(pack, gap);
    PutData(pack, part, subStreamId);
    return {part.size(), false};
  }
  const auto rest = PutData(pack, part, subStreamId);
  if (gap >= kPaddingHeaderSize) {
    PutPaddingStream(rest);
    return {part.size(), false};
  }
  std::fill(rest.begin(), rest.end(), std::uint8_t{0});
  // The zeros count as payload: the PES packet reaches the pack's end.
  PutShort(pack, kPesLengthOffset, static_cast<std::uint16_t>(kSectorSize - kPesFlagsOffset));
  return {part.size(), gap > 0};
}

void MakePaddingPack(MutableSector pack) {
  PutPaddingStream(pack.subspan(kPesStartOffset));
}

void MakeContinuationPack(MutableSector pack, std::uint8_t flags) {
  PutInt(pack, kPesStartOffset, kPrivateStream1);
  pack[kPesFlagsOffset] = flags;
  pack[kPesFlags2Offset] = 0;
  pack[kPesHeaderLengthOffset] = 0;
}

int FillerBytes(std::span<const int> headerLengths, int size) {
  for (std::size_t i = 0; i < headerLengths.size(); ++i) {
    const int gap = PackRoom(headerLengths[i]) - size;
    if (gap < 0) {
      size = -gap;
      continue;
    }
    const bool last = i + 1 == headerLengths.size();
    return gap < kPaddingHeaderSize && !CanStuff(headerLengths[i], gap, last) ? gap : 0;
  }
  return 0;
}

}  // namespace quillomar
