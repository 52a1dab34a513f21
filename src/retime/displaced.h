#pragma once

#include <cstdint>
#include <vector>

namespace quillomar {

// What a number of moves has done to all other sectors: they keep their order, and each lies as
// many sectors further as packs were put in before it less those taken away.
class DisplacedPacks {
 public:
  // LBAs in set of the moved packs before the first and after the last move, in any order.
  DisplacedPacks(std::vector<std::uint32_t> from, std::vector<std::uint32_t> to);

  [[nodiscard]] bool WasMoved(std::uint32_t before) const;
  // Where a sector that was not moved stands now.
  [[nodiscard]] std::uint32_t PlaceOf(std::uint32_t before) const;

 private:
  std::vector<std::uint32_t> from_;
  // By moved pack in the new order: the number of other sectors before it.
  std::vector<std::uint32_t> othersBefore_;
};

}  // namespace quillomar
