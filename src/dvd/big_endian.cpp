#include "dvd/big_endian.h"

namespace quillomar {
namespace {

bool Inside(std::size_t size, std::size_t offset, std::size_t width) {
  return width <= size && offset <= size - width;
}

}  // namespace

std::uint32_t GetInt(std::span<const std::uint8_t> buffer, std::size_t offset) {
  if (!Inside(buffer.size(), offset, 4)) return 0;
  return static_cast<std::uint32_t>(buffer[offset]) << 24 |
         static_cast<std::uint32_t>(buffer[offset + 1]) << 16 |
         static_cast<std::uint32_t>(buffer[offset + 2]) << 8 | buffer[offset + 3];
}

std::uint16_t GetShort(std::span<const std::uint8_t> buffer, std::size_t offset) {
  if (!Inside(buffer.size(), offset, 2)) return 0;
  return static_cast<std::uint16_t>(buffer[offset] << 8 | buffer[offset + 1]);
}

std::uint8_t GetByte(std::span<const std::uint8_t> buffer, std::size_t offset) {
  return Inside(buffer.size(), offset, 1) ? buffer[offset] : std::uint8_t{0};
}

void PutInt(std::span<std::uint8_t> buffer, std::size_t offset, std::uint32_t value) {
  if (!Inside(buffer.size(), offset, 4)) return;
  for (std::size_t i = 0; i < 4; ++i) {
    buffer[offset + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
  }
}

void PutShort(std::span<std::uint8_t> buffer, std::size_t offset, std::uint16_t value) {
  if (!Inside(buffer.size(), offset, 2)) return;
  buffer[offset] = static_cast<std::uint8_t>(value >> 8);
  buffer[offset + 1] = static_cast<std::uint8_t>(value);
}

void AddInt(std::span<std::uint8_t> buffer, std::size_t offset, std::uint32_t delta) {
  PutInt(buffer, offset, GetInt(buffer, offset) + delta);
}

std::uint32_t SwapInt(std::uint32_t value) {
  return value << 24 | (value & 0xFF00U) << 8 | (value >> 8 & 0xFF00U) | value >> 24;
}

std::uint16_t SwapShort(std::uint16_t value) {
  return static_cast<std::uint16_t>(value << 8 | value >> 8);
}

}  // namespace quillomar
