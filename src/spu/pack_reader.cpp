#include "spu/pack_reader.h"

#include "spu/spu_pack.h"

namespace quillomar {

std::optional<std::size_t> ReadPacks(const SubpictureUnit& unit, VobFileSet& set,
                                     std::vector<Sector>& packs) {
  packs.assign(unit.packs.size(), Sector{});
  for (std::size_t i = 0; i < packs.size(); ++i) {
    if (Failed(set.ReadSectors(unit.packs[i].lba, 1, packs[i]))) return i;
  }
  return std::nullopt;
}

bool IsAsRead(const SpuPack& known, SectorView pack) {
  return !known.payloadSum || *known.payloadSum == PayloadSum(pack);
}

}  // namespace quillomar
