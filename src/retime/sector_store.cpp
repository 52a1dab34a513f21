#include "retime/sector_store.h"

namespace quillomar {

SectorStore::Place SectorStore::Take(std::uint32_t count) {
  if (free_.empty()) {
    free_.push_back(static_cast<std::uint32_t>(blocks_.size()));
    const std::size_t size = std::size_t{kBlockSectors} * kSectorSize;
    blocks_.push_back({std::make_unique_for_overwrite<std::uint8_t[]>(size)});
  }
  const std::uint32_t block = free_.back();
  free_.pop_back();
  blocks_[block].used = count;
  return block * kBlockSectors;
}

void SectorStore::Free(Place place) {
  Block& block = blocks_[place / kBlockSectors];
  if (--block.used == 0) free_.push_back(place / kBlockSectors);
}

std::span<std::uint8_t> SectorStore::At(Place place, std::uint32_t count) {
  const std::size_t offset = std::size_t{place % kBlockSectors} * kSectorSize;
  return {blocks_[place / kBlockSectors].bytes.get() + offset, std::size_t{count} * kSectorSize};
}

SectorView SectorStore::At(Place place) const {
  const std::size_t offset = std::size_t{place % kBlockSectors} * kSectorSize;
  return SectorView(blocks_[place / kBlockSectors].bytes.get() + offset, kSectorSize);
}

}  // namespace quillomar
