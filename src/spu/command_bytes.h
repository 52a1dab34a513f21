#pragma once

#include "spu/subpicture_unit.h"

// Arguments of commands as they stand in a unit's bytes; offsets are of the first argument byte.
namespace quillomar {

// Set display area: sx, ex, sy, ey, 12 bits each.
[[nodiscard]] DisplayArea ReadDisplayArea(ByteSpan bytes, std::size_t offset);
// Writes nothing where the six bytes do not lie inside.
void WriteDisplayArea(std::span<std::uint8_t> bytes, std::size_t offset, const DisplayArea& area);

}  // namespace quillomar
