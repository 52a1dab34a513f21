#pragma once

#include <cstdint>
#include <optional>

#include "base/file.h"
#include "dvd/sector.h"

namespace quillomar {

// Time stamp of a pack's PES packet, low 32 bits; nothing when it has none.
[[nodiscard]] std::optional<std::uint32_t> PacketTime(SectorView pack);
// Elementary stream bytes of a video pack; empty for every other pack and for a scrambled one.
[[nodiscard]] ByteSpan VideoBytes(SectorView pack);

}  // namespace quillomar
