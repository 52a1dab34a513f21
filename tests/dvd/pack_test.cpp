#include "dvd/pack.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dvd/big_endian.h"
#include "dvd/nav_pack.h"
#include "support/pack_builder.h"

namespace quillomar {
namespace {

using test::MakePrivatePack;

PackKind KindOfPrivate(std::uint8_t subStreamId) {
  return ClassifyPack(MakePrivatePack(0, subStreamId)).kind;
}

TEST(ClassifyPack, TellsEveryKind) {
  EXPECT_EQ(ClassifyPack(test::MakeEmptyPack(0)).kind, PackKind::kEmpty);
  EXPECT_EQ(ClassifyPack(test::MakePaddingPack(0)).kind, PackKind::kPadding);
  EXPECT_EQ(ClassifyPack(test::MakeVideoPack(0, {})).kind, PackKind::kVideo);
  EXPECT_EQ(ClassifyPack(test::MakeNavPack({})).kind, PackKind::kNav);
  EXPECT_EQ(ClassifyPack(Sector{}).kind, PackKind::kEmpty);
}

TEST(ClassifyPack, KeepsTheSubStreamOfSubpicturesOnly) {
  for (const int id : {0x20, 0x21, 0x3F}) {
    const PackInfo info = ClassifyPack(MakePrivatePack(0, static_cast<std::uint8_t>(id)));
    EXPECT_EQ(info.kind, PackKind::kSubpicture) << id;
    EXPECT_EQ(info.subStreamId, id);
  }
  for (const int id : {0x80, 0x87, 0xA0, 0xA7}) {
    EXPECT_EQ(KindOfPrivate(static_cast<std::uint8_t>(id)), PackKind::kAudio) << id;
  }
  for (const int id : {0x00, 0x1F, 0x40, 0x7F, 0x88, 0x9F, 0xA8, 0xFF}) {
    EXPECT_EQ(KindOfPrivate(static_cast<std::uint8_t>(id)), PackKind::kOther) << id;
  }
}

TEST(ClassifyPack, FindsTheSubStreamBehindTheLongestHeader) {
  Sector sector = MakePrivatePack(0, 0x80);
  sector[kPesHeaderLengthOffset] = 255;
  sector[kPesHeaderDataOffset + 255] = 0x3F;
  EXPECT_EQ(ClassifyPack(sector).kind, PackKind::kSubpicture);
}

TEST(ClassifyPack, WantsBothPacketsOfANavPack) {
  Sector sector = test::MakeNavPack({});
  sector[kDsiPacketOffset + 3] = 0xBE;
  EXPECT_EQ(ClassifyPack(sector).kind, PackKind::kOther);
  sector = test::MakeNavPack({});
  sector[kPciPacketOffset + 3] = 0xBE;
  EXPECT_EQ(ClassifyPack(sector).kind, PackKind::kOther);
}

TEST(ClockReference, SurvivesWritingAndReading) {
  for (const std::uint64_t base : {0x0ULL, 0x1ULL, 0x7FFFULL, 0x8000ULL, 0x3FFFFFFFULL,
                                   0x40000000ULL, 0x123456789ULL, 0x1FFFFFFFFULL}) {
    Sector sector{};
    PutClockReference(sector, {base, 299});
    const ClockReference read = GetClockReference(sector);
    EXPECT_EQ(read.base, base);
    EXPECT_EQ(read.extension, 299);
  }
}

TEST(ClockReference, HasItsMarkerBitsAndTouchesNothingElse) {
  Sector sector;
  sector.fill(0xEE);
  PutClockReference(sector, {0, 0});
  const Bytes expected{0xEE, 0x44, 0x00, 0x04, 0x00, 0x04, 0x01, 0xEE};
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), sector.begin() + 3));
}

TEST(TimeStamp, SurvivesWritingAndReadingAndKeepsBit32) {
  for (const std::uint32_t ticks : {0U, 1U, 0x7FFFU, 0x8000U, 0x40000000U, 0xFFFFFFFFU}) {
    Bytes field(kTimeStampSize);
    PutTimeStamp(field, ticks);
    EXPECT_EQ(GetTimeStamp(field), ticks);
    EXPECT_EQ(field[0] & 0xF1, 0x21);
    field[0] |= 0x08;
    PutTimeStamp(field, ~ticks);
    EXPECT_EQ(GetTimeStamp(field), 0x100000000ULL | ~ticks);
  }
  EXPECT_EQ(GetTimeStamp(Bytes{0x21, 0, 1, 0}), 0U);
}

TEST(PesPayload, EndsWhereThePacketOrTheSectorEnds) {
  Sector sector = MakePrivatePack(0, 0x20);
  EXPECT_EQ(PesPayload(sector).size(), kSectorSize - kPesHeaderDataOffset - kTimeStampSize);
  EXPECT_EQ(PesPayload(sector).front(), 0x20);
  PutShort(sector, kPesLengthOffset, 3 + kTimeStampSize + 10);
  EXPECT_EQ(PesPayload(sector).size(), 10U);
  PutShort(sector, kPesLengthOffset, 0xFFFF);
  EXPECT_EQ(PesPayload(sector).size(), kSectorSize - kPesHeaderDataOffset - kTimeStampSize);
  PutShort(sector, kPesLengthOffset, 3);
  EXPECT_TRUE(PesPayload(sector).empty());
}

TEST(SubpicturePacks, CarryTheUnitAndFillTheirSectors) {
  Bytes unit(5000);
  for (std::size_t i = 0; i < unit.size(); ++i) unit[i] = static_cast<std::uint8_t>(i * 7);
  for (const int headerLength : {0, 5, 8}) {
    for (const std::size_t size : {20UL, 2016UL, 2019UL, 2021UL, 2024UL, 5000UL}) {
      const auto packs = test::MakeSubpicturePacks(
          ByteSpan(unit).first(size), {.stream = 3, .pts = 900, .firstHeaderLength = headerLength});
      Bytes carried;
      for (const Sector& sector : packs) {
        EXPECT_EQ(ClassifyPack(sector).subStreamId, 0x23);
        const auto payload = PesPayload(sector).subspan(1);
        carried.insert(carried.end(), payload.begin(), payload.end());
      }
      EXPECT_EQ(carried, Bytes(unit.begin(), unit.begin() + static_cast<std::ptrdiff_t>(size)));
      const auto stamp = std::span(packs[0]).subspan(kPesHeaderDataOffset, kTimeStampSize);
      EXPECT_EQ(GetTimeStamp(stamp) == 900U, headerLength > 0);
    }
  }
}

}  // namespace
}  // namespace quillomar
