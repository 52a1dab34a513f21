#include "spu/gather.h"

#include <gtest/gtest.h>

#include "dvd/big_endian.h"
#include "pack_disc.h"
#include "spu/spu_pack.h"

namespace quillomar {
namespace {

using namespace test;

constexpr auto kMore = GatherResult::kNeedMore;
constexpr auto kWhole = GatherResult::kComplete;
constexpr auto kDropped = GatherResult::kFailed;
using Answers = std::vector<GatherResult>;

TEST(Gather, PutsUnitsOfOneToThreePacksTogether) {
  struct Case {
    std::size_t size, packs;
    int header, freeRoom;
  };
  // Free room: 2018 - h - bytes in the last pack, never negative.
  for (const Case& each :
       {Case{300, 1, 5, 2018 - 5 - 300}, Case{300, 1, 8, 2018 - 8 - 300}, Case{2018 - 5, 1, 5, 0},
        Case{2019, 1, 5, 0}, Case{2019 + 100, 2, 5, 2018 - 100}, Case{5000, 3, 5, 1061}}) {
    const Bytes bytes = UnitOfSize(each.size);
    ASSERT_EQ(bytes.size(), each.size);
    SubpictureSpec spec{.stream = 2, .pts = 0x1'2345'6789};
    spec.firstHeaderLength = each.header;
    PackDisc disc(MakeSubpicturePacks(bytes, spec), 2);
    SpuGatherer gatherer(disc.set);
    const Answers answers = disc.Gather(gatherer);
    ASSERT_EQ(answers.size(), each.packs);
    EXPECT_EQ(answers.back(), kWhole);
    const SubpictureUnit& unit = gatherer.Unit();
    EXPECT_EQ(unit.state.bytes, bytes);
    EXPECT_EQ(unit.state.freeRoom, each.freeRoom) << each.size;
    EXPECT_EQ(unit.state.pts, 0x2345'6789U);
    EXPECT_EQ(unit.ptsAsRead, 0x2345'6789U);
    ASSERT_EQ(unit.packs.size(), each.packs);
    EXPECT_EQ(unit.packs.back().lba, PackDisc::kFirstLba + each.packs - 1);
    EXPECT_EQ(unit.stream, 2);
    EXPECT_EQ(unit.vcid, (Vcid{3, 4}));
    EXPECT_EQ(unit.state.sequences.size(), 2U);
    EXPECT_TRUE(unit.currentColours.has_value());
    const Sector first = disc.ReadPack(0);
    EXPECT_TRUE(std::equal(unit.firstHeader.begin(), unit.firstHeader.end(), first.begin()));
    EXPECT_TRUE(disc.messages.errors.empty());
    EXPECT_TRUE(disc.messages.LogLines().empty());
  }
}

TEST(Gather, TakesFromEachPackOnlyWhatItsLengthSays) {
  const Bytes bytes = UnitOfSize(1200);
  SubpictureSpec spec;
  spec.packs = 3;
  auto packs = MakeSubpicturePacks(bytes, spec);
  PackDisc disc(packs);
  EXPECT_EQ(disc.GatherOne().state.bytes, bytes);
  for (const char* lba : {"1", "2"}) {
    EXPECT_TRUE(disc.messages.Logged(
        std::string("NOTE: There's probably a padding stream in the middle of the subpic data "
                    "at LBA ") +
        lba));
  }
  EXPECT_EQ(disc.messages.LogLines().size(), 2U);
}

TEST(Gather, RefusesAFirstPackWithoutTimeStamp) {
  SubpictureSpec spec;
  spec.firstHeaderLength = 0;
  auto packs = MakeSubpicturePacks(UnitOfSize(300), spec);
  auto flagless = MakeSubpicturePacks(UnitOfSize(300), {});
  flagless[0][kPesFlags2Offset] = 0;
  packs.insert(packs.end(), flagless.begin(), flagless.end());
  PackDisc disc(packs);
  SpuGatherer gatherer(disc.set);
  EXPECT_EQ(disc.Gather(gatherer), (Answers{kDropped, kDropped}));
  ASSERT_EQ(disc.messages.errors.size(), 2U);
  EXPECT_EQ(disc.messages.errors[0],
            "Serious error while reading SPU # 7 starting at LBA 1 (LBA 1 of VTS_XX_2.VOB)\n"
            "Replacing with a stuffing pack...\nVCID: 3/4 StreamID 0x20");
  EXPECT_TRUE(disc.messages.Logged("Len is zero or there's no PTS at LBA 2!"));
}

TEST(Gather, ReplacesAnInterruptedUnitByTheNewOne) {
  auto packs = MakeSubpicturePacks(UnitOfSize(3000), {});
  packs.pop_back();
  const Bytes second = UnitOfSize(2500);
  const auto more = MakeSubpicturePacks(second, {.pts = 900});
  packs.insert(packs.end(), more.begin(), more.end());
  PackDisc disc(packs);
  const SubpictureUnit unit = disc.GatherOne();
  EXPECT_EQ(unit.state.bytes, second);
  EXPECT_EQ(unit.state.pts, 900U);
  EXPECT_EQ(unit.packs.size(), 2U);
  EXPECT_EQ(disc.messages.errors,
            std::vector<std::string>{
                "SPU # 7 starting at LBA 1 (LBA 1 of VTS_XX_2.VOB) is incomplete! Dropping "
                "it...\nVCID: 3/4 StreamID 0x20"});
}

TEST(Gather, DropsAUnitThatNeedsMoreThan32PacksAndItsRest) {
  SubpictureSpec spec;
  spec.packs = 35;
  auto packs = MakeSubpicturePacks(UnitOfSize(3500), spec);
  ASSERT_EQ(packs.size(), 35U);
  const Bytes good = UnitOfSize(400);
  const auto more = MakeSubpicturePacks(good, {});
  packs.insert(packs.end(), more.begin(), more.end());
  PackDisc disc(packs);
  SpuGatherer gatherer(disc.set);
  const Answers answers = disc.Gather(gatherer);
  EXPECT_EQ(answers[32], kDropped);
  EXPECT_EQ(std::count(answers.begin(), answers.end(), kDropped), 1);
  EXPECT_EQ(answers.back(), kWhole);
  EXPECT_EQ(gatherer.Unit().state.bytes, good);
  ASSERT_EQ(disc.messages.errors.size(), 1U);
  EXPECT_NE(disc.messages.errors[0].find("needs more than 32 packs! Dropping it..."),
            std::string::npos);
}

TEST(Gather, DropsUnitsWhoseHeaderDoesNotHold) {
  Bytes pastEnd = UnitOfSize(300);
  PutShort(pastEnd, kSpuDcsqtOffset, 300);
  PackDisc disc(MakeSubpicturePacks(pastEnd, {}));
  SpuGatherer gatherer(disc.set);
  EXPECT_EQ(disc.Gather(gatherer), Answers{kDropped});
  ASSERT_FALSE(disc.messages.errors.empty());
  EXPECT_EQ(disc.messages.errors[0],
            "Inconsistent data in subpic at LBA 1. Offset to commands past end of SPU");

  auto cut = MakeSubpicturePacks(UnitOfSize(300), {});
  PutShort(cut[0], kPesLengthOffset, 5 + 4 + 3);
  PackDisc second(cut);
  SpuGatherer again(second.set);
  EXPECT_EQ(second.Gather(again), Answers{kDropped});
}

TEST(Gather, RecordsAPaddingPackOnlyInsideAUnit) {
  const Bytes bytes = UnitOfSize(3000);
  const auto packs = MakeSubpicturePacks(bytes, {});
  PackDisc disc(packs);
  SpuGatherer gatherer(disc.set);
  const Sector padding = MakePaddingPack(0);
  EXPECT_EQ(gatherer.GatherPack(padding, disc.Place(50), disc.Context()), kMore);
  EXPECT_EQ(gatherer.GatherPack(packs[0], disc.Place(51), disc.Context()), kMore);
  EXPECT_EQ(gatherer.GatherPack(padding, disc.Place(52), disc.Context()), kMore);
  EXPECT_EQ(gatherer.GatherPack(packs[1], disc.Place(53), disc.Context()), kWhole);
  EXPECT_EQ(gatherer.Unit().state.bytes, bytes);
  ASSERT_EQ(gatherer.Unit().packs.size(), 3U);
  EXPECT_EQ(gatherer.Unit().packs[1].lba, 52U);
}

TEST(Gather, SaysOnceThatPacksAreScrambled) {
  auto packs = MakeSubpicturePacks(UnitOfSize(300), {});
  packs[0][kPesFlagsOffset] |= 0x10;
  Sector garbled = packs[0];
  std::fill(garbled.begin() + 128, garbled.end(), std::uint8_t{0x5A});
  packs.push_back(garbled);
  PackDisc disc(packs);
  SpuGatherer gatherer(disc.set);
  EXPECT_EQ(disc.Gather(gatherer), (Answers{kWhole, kDropped}));
  ASSERT_EQ(disc.messages.errors.size(), 1U);
  EXPECT_NE(disc.messages.errors[0].find("scrambled"), std::string::npos);
}

TEST(Gather, TakesTheButtonsOfTheLastHighlight) {
  const auto packs = MakeSubpicturePacks(UnitOfSize(3000), {});
  PackDisc disc(packs);
  disc.highlight.buttons = {Button{.colourNumber = 1}, Button{.colourNumber = 2}};
  SpuGatherer gatherer(disc.set);
  PackContext place = disc.Place(1);
  EXPECT_EQ(gatherer.GatherPack(packs[0], place, disc.Context()), kMore);
  EXPECT_FALSE(gatherer.Unit().HasButtons());
  place.buttonCount = 2;
  EXPECT_EQ(gatherer.GatherPack(packs[1], place, disc.Context()), kWhole);
  EXPECT_EQ(gatherer.Unit().highlight, disc.highlight);
}

}  // namespace
}  // namespace quillomar
