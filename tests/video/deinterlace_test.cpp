#include "video/deinterlace.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillomar {
namespace {

constexpr int kWidth = 16, kHeight = 9, kStride = 20;

// A bright bar that stands at different columns in the rows of either field.
std::vector<std::uint8_t> Plane(int evenColumn, int oddColumn) {
  std::vector<std::uint8_t> plane(kStride * kHeight, 30);
  for (int y = 0; y < kHeight; ++y) {
    const int column = y % 2 == 0 ? evenColumn : oddColumn;
    for (int x = column; x < column + 4; ++x)
      plane[static_cast<std::size_t>(y * kStride + x)] = 200;
  }
  return plane;
}

TEST(RemoveCombing, MovedBarBecomesThatOfTheEvenRows) {
  auto plane = Plane(2, 7);
  RemoveCombing(plane, kStride, kWidth, kHeight);
  EXPECT_EQ(plane, Plane(2, 2));
}

TEST(RemoveCombing, StillPictureStays) {
  auto plane = Plane(5, 5);
  plane[5 * kStride + 1] = 38;  // noise
  const auto before = plane;
  RemoveCombing(plane, kStride, kWidth, kHeight);
  EXPECT_EQ(plane, before);
}

}  // namespace
}  // namespace quillomar
