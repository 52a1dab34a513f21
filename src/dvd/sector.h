#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <tuple>

namespace quillomar {

// One logical block of a DVD; an LBA counts these.
inline constexpr std::size_t kSectorSize = 2048;

using Sector = std::array<std::uint8_t, kSectorSize>;
using SectorView = std::span<const std::uint8_t, kSectorSize>;

// VOB id and cell id, together the name of a stretch of the multiplex.
struct Vcid {
  std::uint16_t vobId = 0;
  std::uint8_t cellId = 0;
  friend bool operator==(const Vcid&, const Vcid&) = default;
  friend bool operator<(const Vcid& a, const Vcid& b) {
    return std::tie(a.vobId, a.cellId) < std::tie(b.vobId, b.cellId);
  }
};

}  // namespace quillomar
