#pragma once

#include <optional>
#include <vector>

#include "dvd/vob_file_set.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Reads all packs of the unit, in order. Returns the index of the first that cannot be read.
[[nodiscard]] std::optional<std::size_t> ReadPacks(const SubpictureUnit& unit, VobFileSet& set,
                                                   std::vector<Sector>& packs);

// False when the pack's payload is no longer what was gathered.
[[nodiscard]] bool IsAsRead(const SpuPack& known, SectorView pack);

}  // namespace quillomar
