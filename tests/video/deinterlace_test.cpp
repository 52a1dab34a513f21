#include "video/deinterlace.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillomar {
namespace {

constexpr int kWidth = 16, kHeight = 9, kStride = 20;

// A bright bar that stands at different columns in the rows of either field, and a speck of noise.
std::vector<std::uint8_t> Plane(std::size_t evenColumn, std::size_t oddColumn) {
  std::vector<std::uint8_t> plane(kStride * kHeight, 30);
  plane[3 * kStride + 14] = 38;
  for (std::size_t y = 0; y < kHeight; ++y) {
    const std::size_t column = y % 2 == 0 ? evenColumn : oddColumn;
    for (std::size_t x = column; x < column + 4; ++x) plane[y * kStride + x] = 200;
  }
  return plane;
}

TEST(RemoveCombing, MovedBarBecomesThatOfTheEvenRowsAndTheRestStays) {
  auto plane = Plane(2, 7);
  RemoveCombing(plane, kStride, kWidth, kHeight);
  EXPECT_EQ(plane, Plane(2, 2));
  RemoveCombing(plane, kStride, kWidth, kHeight);
  EXPECT_EQ(plane, Plane(2, 2));
}

}  // namespace
}  // namespace quillomar
