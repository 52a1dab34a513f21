#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "dvd/sector.h"

namespace quillomar {

// Memory for sectors that come and go. It is taken in blocks, each of which is used anew once all
// its sectors are free.
class SectorStore {
 public:
  static constexpr std::uint32_t kBlockSectors = 128;
  using Place = std::uint32_t;

  // Places of up to kBlockSectors sectors, one after the other; contents undefined.
  [[nodiscard]] Place Take(std::uint32_t count);
  void Free(Place place);
  // `count` sectors from a place on that were taken together.
  [[nodiscard]] std::span<std::uint8_t> At(Place place, std::uint32_t count);
  [[nodiscard]] SectorView At(Place place) const;

 private:
  struct Block {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::uint32_t used = 0;
  };
  std::vector<Block> blocks_;
  std::vector<std::uint32_t> free_;  // indices of blocks without a sector
};

}  // namespace quillomar
