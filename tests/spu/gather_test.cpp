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
    const SubpictureSpec spec{.stream = 2, .pts = 0x1'2345'6789, .firstHeaderLength = each.header};
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
    const Sector first = disc.ReadPack(0);
    EXPECT_TRUE(std::equal(unit.firstHeader.begin(), unit.firstHeader.end(), first.begin()));
    EXPECT_TRUE(disc.messages.errors.empty());
    EXPECT_TRUE(disc.messages.LogLines().empty());
  }
}

TEST(Gather, TakesFromEachPackOnlyWhatItsLengthSays) {
  const Bytes bytes = UnitOfSize(1200);
  PackDisc disc(MakeSubpicturePacks(bytes, {.packs = 3}));
  EXPECT_EQ(disc.GatherOne().state.bytes, bytes);
  for (const char* lba : {"1", "2"}) {
    EXPECT_TRUE(disc.messages.Logged(
        std::string("NOTE: There's probably a padding stream in the middle of the subpic data "
                    "at LBA ") +
        lba));
  }
  EXPECT_EQ(disc.messages.LogLines().size(), 2U);
}

TEST(Gather, DropsWhatIsNoUnit) {
  auto noHeader = MakeSubpicturePacks(UnitOfSize(300), {.firstHeaderLength = 0});
  auto noStamp = MakeSubpicturePacks(UnitOfSize(300), {});
  noStamp[0][kPesFlags2Offset] = 0;
  Bytes pastEnd = UnitOfSize(300);
  PutShort(pastEnd, kSpuDcsqtOffset, 300);
  auto cut = MakeSubpicturePacks(UnitOfSize(300), {});
  PutShort(cut[0], kPesLengthOffset, 5 + 4 + 3);
  const std::string replaced =
      "Serious error while reading SPU # 7 starting at LBA 1 (LBA 1 of VTS_XX_2.VOB)\n"
      "Replacing with a stuffing pack...\nVCID: 3/4 StreamID 0x20";
  const std::string outside =
      "Inconsistent data in subpic at LBA 1. Offset to commands past end of SPU";
  struct Case {
    std::vector<Sector> packs;
    std::string error, log;
  };
  const std::string noTime = "Len is zero or there's no PTS at LBA 1!";
  for (const Case& each :
       {Case{noHeader, replaced, noTime}, Case{noStamp, replaced, noTime}, Case{cut, outside, ""},
        Case{MakeSubpicturePacks(pastEnd, {}), outside,
             "Error in Parse Command at LBA 1: Offset to DCSQT 65535"}}) {
    PackDisc disc(each.packs);
    SpuGatherer gatherer(disc.set);
    EXPECT_EQ(disc.Gather(gatherer), Answers{kDropped});
    EXPECT_EQ(disc.messages.errors.at(0), each.error);
    EXPECT_EQ(disc.messages.LogLines(),
              std::vector<std::string>(each.log.empty() ? 0 : 1, each.log));
  }
}

TEST(Gather, StartsAnewWhereAUnitIsInterruptedOrNeedsMoreThan32Packs) {
  auto interrupted = MakeSubpicturePacks(UnitOfSize(3000), {});
  interrupted.pop_back();
  for (auto packs : {interrupted, MakeSubpicturePacks(UnitOfSize(3500), {.packs = 35})}) {
    const std::size_t first = packs.size();
    const Bytes good = UnitOfSize(2500);
    const auto more = MakeSubpicturePacks(good, {.pts = 900});
    packs.insert(packs.end(), more.begin(), more.end());
    PackDisc disc(packs);
    SpuGatherer gatherer(disc.set);
    Answers expected(first + 2, kMore);
    if (first == 35) expected[32] = kDropped;
    expected.back() = kWhole;
    EXPECT_EQ(disc.Gather(gatherer), expected);
    EXPECT_EQ(gatherer.Unit().state.bytes, good);
    EXPECT_EQ(gatherer.Unit().state.pts, 900U);
    EXPECT_EQ(gatherer.Unit().packs.size(), 2U);
    ASSERT_EQ(disc.messages.errors.size(), 1U);
    const std::string why =
        first == 35 ? "needs more than 32 packs!" : "(LBA 1 of VTS_XX_2.VOB) is incomplete!";
    EXPECT_NE(disc.messages.errors[0].find(why + " Dropping it..."), std::string::npos);
  }
}

TEST(Gather, TakesPaddingInsideAUnitAndTheButtonsOfTheLastHighlight) {
  const auto packs = MakeSubpicturePacks(UnitOfSize(3000), {});
  PackDisc disc(packs);
  disc.highlight.buttons = {Button{.colourNumber = 1}, Button{.colourNumber = 2}};
  SpuGatherer gatherer(disc.set);
  const Sector padding = MakePaddingPack(0);
  EXPECT_EQ(gatherer.GatherPack(padding, disc.Place(50), disc.Context()), kMore);
  EXPECT_EQ(gatherer.GatherPack(packs[0], disc.Place(51), disc.Context()), kMore);
  EXPECT_FALSE(gatherer.Unit().HasButtons());
  EXPECT_EQ(gatherer.GatherPack(padding, disc.Place(52), disc.Context()), kMore);
  PackContext place = disc.Place(53);
  place.buttonCount = 2;
  EXPECT_EQ(gatherer.GatherPack(packs[1], place, disc.Context()), kWhole);
  EXPECT_EQ(gatherer.Unit().highlight, disc.highlight);
  ASSERT_EQ(gatherer.Unit().packs.size(), 3U);
  EXPECT_EQ(gatherer.Unit().packs[1].lba, 52U);
}

}  // namespace
}  // namespace quillomar
