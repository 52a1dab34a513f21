#pragma once

#include <cstdint>

#include "base/file.h"

namespace quillomar {

// 64 bits over bytes, going on from another sum: each eight bytes are mixed in as one little-endian
// number, the last ones filled up with zeros and with their count. Tells damage and change, not
// intent.
[[nodiscard]] std::uint64_t Checksum(ByteSpan bytes, std::uint64_t seed = 0);

}  // namespace quillomar
