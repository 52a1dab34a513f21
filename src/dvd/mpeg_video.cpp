#include "dvd/mpeg_video.h"

#include <array>

#include "dvd/big_endian.h"
#include "dvd/pack.h"

namespace quillomar {
namespace {

constexpr std::size_t kPictureTypeOffset = 1;  // from the end of the start code: 10 + 3 bits
constexpr int kIntraPicture = 1;

// What follows the PES header, to the sector's end whatever the packet's length says.
std::span<const std::uint8_t> Payload(SectorView pack) {
  return pack.subspan(kPesHeaderDataOffset + pack[kPesHeaderLengthOffset]);
}

// Position behind the first such start code at or after `from`.
std::optional<std::size_t> FindStartCode(std::span<const std::uint8_t> bytes, std::uint32_t code,
                                         std::size_t from = 0) {
  std::uint32_t window = ~0U;
  for (std::size_t i = from; i < bytes.size(); ++i) {
    window = window << 8 | bytes[i];
    if (window == code) return i + 1;
  }
  return std::nullopt;
}

}  // namespace

std::optional<SequenceHeader> FindSequenceHeader(SectorView videoPack) {
  const auto payload = Payload(videoPack);
  const auto position = FindStartCode(payload, kSequenceStart);
  if (!position || *position + sizeof(std::uint32_t) > payload.size()) return std::nullopt;
  const std::uint32_t word = GetInt(payload, *position);
  return SequenceHeader{static_cast<int>(word >> 20), static_cast<int>(word >> 8 & 0xFFF),
                        static_cast<int>(word >> 4 & 0xF), static_cast<int>(word & 0xF)};
}

double FrameRateOf(int code) {
  constexpr std::array<double, 9> kRates = {0,  24000.0 / 1001, 24, 25, 30000.0 / 1001, 30,
                                            50, 60000.0 / 1001, 60};
  const auto index = static_cast<std::size_t>(code);
  return index < kRates.size() ? kRates.at(index) : 0;
}

VideoStandard StandardOf(const SequenceHeader& header) {
  const bool ntsc = header.height == 480 || header.height == 240;
  return ntsc ? VideoStandard::kNtsc : VideoStandard::kPal;
}

std::optional<bool> FindMpeg2(SectorView videoPack) {
  const auto payload = Payload(videoPack);
  const auto picture = FindStartCode(payload, kPictureStart);
  if (!picture) return std::nullopt;
  const int type = GetByte(payload, *picture + kPictureTypeOffset) >> 3 & 7;
  if (type != kIntraPicture) return std::nullopt;
  return FindStartCode(payload, kExtensionStart).has_value();
}

bool HasClosedCaptions(SectorView videoPack) {
  const auto payload = Payload(videoPack);
  auto position = FindStartCode(payload, kUserDataStart);
  while (position) {
    if (GetInt(payload, *position) == kClosedCaptionMark) return true;
    position = FindStartCode(payload, kUserDataStart, *position);
  }
  return false;
}

}  // namespace quillomar
