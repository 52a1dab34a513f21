#include "video/deinterlace.h"

#include <algorithm>

namespace quillomar {
namespace {

// Below this a difference between rows is noise or a soft edge.
constexpr int kCombThreshold = 12;

bool SticksOut(int above, int sample, int below) {
  const int high = std::max(above, below);
  const int low = std::min(above, below);
  return sample > high + kCombThreshold || sample < low - kCombThreshold;
}

}  // namespace

void RemoveCombing(std::span<std::uint8_t> plane, std::size_t stride, int width, int height) {
  const auto columns = static_cast<std::size_t>(width);
  for (std::size_t y = 1; y < static_cast<std::size_t>(height); y += 2) {
    const bool last = y + 1 == static_cast<std::size_t>(height);
    const auto above = plane.subspan((y - 1) * stride, columns);
    const auto row = plane.subspan(y * stride, columns);
    const auto below = last ? above : plane.subspan((y + 1) * stride, columns);
    for (std::size_t x = 0; x < columns; ++x) {
      if (SticksOut(above[x], row[x], below[x])) {
        row[x] = static_cast<std::uint8_t>((above[x] + below[x] + 1) / 2);
      }
    }
  }
}

}  // namespace quillomar
