#pragma once

#include <cstdint>

#include "dvd/pack.h"

namespace quillomar {

// What one pack takes at the multiplex rate of a DVD: 43,886 periods of 27 MHz.
inline constexpr std::uint64_t kPackTicks = 146;
inline constexpr unsigned kPackExtension = 86;
inline constexpr unsigned kExtensionsPerTick = 300;

// The clock reference a number of pack times later.
[[nodiscard]] inline ClockReference PacksLater(ClockReference reference, unsigned packs) {
  const std::uint64_t extension = reference.extension + std::uint64_t{packs} * kPackExtension;
  return {reference.base + packs * kPackTicks + extension / kExtensionsPerTick,
          static_cast<std::uint16_t>(extension % kExtensionsPerTick)};
}

[[nodiscard]] inline bool IsBefore(ClockReference a, ClockReference b) {
  return a.base != b.base ? a.base < b.base : a.extension < b.extension;
}

}  // namespace quillomar
