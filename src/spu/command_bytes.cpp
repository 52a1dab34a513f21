#include "spu/command_bytes.h"

#include "dvd/big_endian.h"

namespace quillomar {
namespace {

constexpr unsigned kCoordinateMask = 0xFFF;
constexpr std::size_t kCoordinatePairSize = kDisplayAreaSize / 2;

// Two 12-bit values in three bytes.
unsigned ReadPair(ByteSpan bytes, std::size_t offset) {
  return static_cast<unsigned>(GetByte(bytes, offset) << 16 | GetShort(bytes, offset + 1));
}

void WritePair(std::span<std::uint8_t> bytes, std::size_t offset, unsigned first, unsigned second) {
  const unsigned pair = (first & kCoordinateMask) << 12U | (second & kCoordinateMask);
  bytes[offset] = static_cast<std::uint8_t>(pair >> 16U);
  PutShort(bytes, offset + 1, static_cast<std::uint16_t>(pair & 0xFFFFU));
}

}  // namespace

DisplayArea ReadDisplayArea(ByteSpan bytes, std::size_t offset) {
  const unsigned x = ReadPair(bytes, offset);
  const unsigned y = ReadPair(bytes, offset + kCoordinatePairSize);
  const auto first = [](unsigned pair) { return static_cast<std::uint16_t>(pair >> 12U); };
  const auto second = [](unsigned pair) {
    return static_cast<std::uint16_t>(pair & kCoordinateMask);
  };
  return {first(x), second(x), first(y), second(y)};
}

void WriteDisplayArea(std::span<std::uint8_t> bytes, std::size_t offset, const DisplayArea& area) {
  if (offset + kDisplayAreaSize > bytes.size()) return;
  WritePair(bytes, offset, area.sx, area.ex);
  WritePair(bytes, offset + kCoordinatePairSize, area.sy, area.ey);
}

}  // namespace quillomar
