#include "dvd/big_endian.h"

#include <gtest/gtest.h>

#include <array>

namespace quillomar {
namespace {

TEST(BigEndian, FieldsAreReadAndWrittenMostSignificantByteFirst) {
  std::array<std::uint8_t, 6> bytes = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC};
  EXPECT_EQ(GetInt(bytes, 0), 0x12345678U);
  EXPECT_EQ(GetShort(bytes, 4), 0x9ABC);
  PutInt(bytes, 1, 5);
  AddInt(bytes, 1, 0xFFFFFFFF);
  PutShort(bytes, 4, 0x0102);
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{0x12, 0, 0, 0, 1, 2}));
  EXPECT_EQ(SwapInt(0x12345678), 0x78563412U);
  EXPECT_EQ(SwapShort(0x1234), 0x3412);
}

TEST(BigEndian, AccessPastTheEndReadsNothingAndWritesNothing) {
  std::array<std::uint8_t, 4> bytes = {1, 2, 3, 4};
  EXPECT_EQ(GetInt(bytes, 1), 0U);
  EXPECT_EQ(GetShort(bytes, 3), 0U);
  EXPECT_EQ(GetByte(bytes, 4), 0U);
  EXPECT_EQ(GetInt(bytes, SIZE_MAX), 0U);
  EXPECT_EQ(GetInt({}, 0), 0U);
  PutInt(bytes, 1, 0xFFFFFFFF);
  PutShort(bytes, SIZE_MAX, 0xFFFF);
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace quillomar
