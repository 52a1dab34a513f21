#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Big-endian fields of DVD structures. An access that does not lie wholly inside the buffer (an
// empty buffer included) reads 0 or writes nothing.
namespace quillomar {

[[nodiscard]] std::uint32_t GetInt(std::span<const std::uint8_t> buffer, std::size_t offset);
[[nodiscard]] std::uint16_t GetShort(std::span<const std::uint8_t> buffer, std::size_t offset);
[[nodiscard]] std::uint8_t GetByte(std::span<const std::uint8_t> buffer, std::size_t offset);
void PutInt(std::span<std::uint8_t> buffer, std::size_t offset, std::uint32_t value);
void PutShort(std::span<std::uint8_t> buffer, std::size_t offset, std::uint16_t value);
// Adds modulo 2^32.
void AddInt(std::span<std::uint8_t> buffer, std::size_t offset, std::uint32_t delta);
// The value with its bytes reversed.
[[nodiscard]] std::uint32_t SwapInt(std::uint32_t value);
[[nodiscard]] std::uint16_t SwapShort(std::uint16_t value);

}  // namespace quillomar
