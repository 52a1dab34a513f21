#include "retime/displaced.h"

#include <algorithm>

namespace quillomar {

DisplacedPacks::DisplacedPacks(std::vector<std::uint32_t> from, std::vector<std::uint32_t> to)
    : from_(std::move(from)), othersBefore_(std::move(to)) {
  std::sort(from_.begin(), from_.end());
  std::sort(othersBefore_.begin(), othersBefore_.end());
  std::uint32_t moved = 0;
  for (std::uint32_t& place : othersBefore_) place -= moved++;
}

bool DisplacedPacks::WasMoved(std::uint32_t before) const {
  return std::binary_search(from_.begin(), from_.end(), before);
}

std::uint32_t DisplacedPacks::PlaceOf(std::uint32_t before) const {
  const auto gone = std::lower_bound(from_.begin(), from_.end(), before) - from_.begin();
  const std::uint32_t rank = before - static_cast<std::uint32_t>(gone);
  const auto put = std::upper_bound(othersBefore_.begin(), othersBefore_.end(), rank);
  return rank + static_cast<std::uint32_t>(put - othersBefore_.begin());
}

}  // namespace quillomar
