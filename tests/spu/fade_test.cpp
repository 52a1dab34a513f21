#include "spu/fade.h"

#include "dvd/big_endian.h"
#include "edit_fixture.h"
#include "pack_disc.h"
#include "spu/duration.h"
#include "spu/visibility.h"

namespace quillomar {
namespace {

using namespace test;

class FadeTest : public EditTest {
 protected:
  static std::vector<int> Delays(const SubpictureUnit& unit) {
    std::vector<int> delays;
    for (const auto& sequence : unit.state.sequences) delays.push_back(sequence.delay);
    return delays;
  }
};

TEST_F(FadeTest, RisesToEachTypesOwnAlphaAndIsTakenAwayAgain) {
  SpuDescription description = Plain(105);  // 1194 ms, shown as 1200
  description.sequences[0].commands[2] = ContrastCommand({2, 15, 8, 3});
  SubpictureUnit unit = Parsed(description, 128);
  const Bytes bytes = unit.state.bytes;
  EXPECT_FALSE(HasFadeIn(unit));
  ASSERT_EQ(AddFadeIn(unit, false, context_), Result::kDone);
  ASSERT_EQ(unit.state.sequences.size(), 18U);
  EXPECT_EQ(unit.state.freeRoom, 0);
  EXPECT_EQ(unit.currentSequence, 16);
  EXPECT_TRUE(unit.state.modified);
  // 16 steps, 9 ms apart, each rounded to whole frames of 3600 / 1024 units.
  EXPECT_EQ(Delays(unit),
            (std::vector<int>{0, 0, 0, 3, 3, 3, 3, 7, 7, 7, 7, 7, 10, 10, 10, 10, 14, 105}));
  EXPECT_EQ(AlphasOf(unit, 0), (PixelTypeValues{2, 0, 0, 0}));
  EXPECT_EQ(AlphasOf(unit, 1), (PixelTypeValues{2, 0, 0, 0}));
  EXPECT_EQ(AlphasOf(unit, 9), (PixelTypeValues{2, 8, 4, 1}));
  EXPECT_EQ(AlphasOf(unit, 16), (PixelTypeValues{2, 15, 8, 3}));
  ContentOf(unit);
  EXPECT_TRUE(HasFadeIn(unit));
  ExpectRefusal(unit, "", [&](SubpictureUnit& each) { return AddFadeIn(each, false, context_); });

  ASSERT_EQ(RemoveFadeIn(unit, context_), Result::kDone);
  EXPECT_EQ(unit.state.bytes, bytes);
  EXPECT_EQ(unit.currentSequence, 0);
  EXPECT_EQ(unit.currentAlphas, (PixelTypeValues{2, 15, 8, 3}));
  ExpectRefusal(unit, "", [&](SubpictureUnit& each) { return RemoveFadeIn(each, context_); });
}

TEST_F(FadeTest, RoomAndStandardDecideTheSteps) {
  SpuDescription description = Plain(300);  // 3413 ms
  description.spareBytes = 33;
  SubpictureUnit unit = Parsed(description, 15);
  const auto content = ContentOf(unit);
  ASSERT_EQ(AddFadeIn(unit, false, ntsc_), Result::kDone);
  EXPECT_EQ(unit.state.sequences.size(), 8U);  // 48 bytes hold six steps of 71 ms
  EXPECT_EQ(Delays(unit), (std::vector<int>{0, 5, 11, 17, 26, 32, 38, 300}));
  EXPECT_EQ(unit.state.freeRoom, 0);
  EXPECT_EQ(unit.state.spareRoom, 0);
  ASSERT_EQ(RemoveFadeIn(unit, ntsc_), Result::kDone);
  EXPECT_EQ(ContentOf(unit), content);
  EXPECT_EQ(unit.state.freeRoom, 48);
}

TEST_F(FadeTest, RefusalsKeepEveryByte) {
  const auto refuse = [this](const SpuDescription& description, int freeRoom, const char* text) {
    SubpictureUnit unit = Parsed(description, freeRoom);
    ExpectRefusal(unit, text,
                  [&](SubpictureUnit& each) { return AddFadeIn(each, false, context_); });
    ExpectRefusal(unit, "", [&](SubpictureUnit& each) { return AddFadeIn(each, true, context_); });
  };
  refuse(Plain(0), 500, "Duration too short to add fade-in");
  refuse(Plain(105), 31, "Not enough room to add fade-in");
  refuse(Plain(87), 500, "Subtitle too short to add fade-in (minimum 1s)");
  SpuDescription spare = Plain(87);  // room is made before the refusal
  spare.spareBytes = 100;
  refuse(spare, 0, "Subtitle too short to add fade-in (minimum 1s)");
  SpuDescription endless = Plain(105);
  endless.sequences.pop_back();
  refuse(endless, 500, "");
  SpuDescription noStop = Plain(105);
  noStop.sequences[1].commands = {ContrastCommand({0, 1, 1, 1})};
  refuse(noStop, 500, "");
  SpuDescription noContrast = Plain(105);
  noContrast.sequences[0].commands.pop_back();
  refuse(noContrast, 500, "");
}

TEST_F(FadeTest, OnlyARiseIsAFade) {
  const auto stepped = [](const Bytes& first, const Bytes& second) {
    SpuDescription description = Plain(300);
    description.sequences[0].commands[2] = ContrastCommand({0, 1, 1, 1});
    description.sequences.insert(description.sequences.begin() + 1,
                                 {{10, {first}}, {20, {second}}});
    return description;
  };
  const Bytes low = ContrastCommand({0, 4, 4, 4});
  const Bytes high = ContrastCommand({0, 9, 9, 9});
  EXPECT_TRUE(HasFadeIn(Parsed(stepped(low, high))));
  EXPECT_FALSE(HasFadeIn(Parsed(stepped(high, low))));
  EXPECT_FALSE(HasFadeIn(Parsed(stepped(ContrastCommand({0, 0, 4, 4}), high))));
  EXPECT_FALSE(HasFadeIn(Parsed(stepped(low, ColourCommand({0, 9, 9, 9})))));
  SpuDescription backwards = stepped(low, high);
  backwards.sequences[2].delay = 9;
  EXPECT_FALSE(HasFadeIn(Parsed(backwards)));
}

TEST_F(FadeTest, GoesAlsoWhenTheUnitHasLostItsStopOrItsAlphas) {
  SubpictureUnit unit = Parsed(Plain(105));
  ASSERT_EQ(AddFadeIn(unit, false, context_), Result::kDone);
  ASSERT_EQ(RemoveStopCommand(unit, context_), Result::kDone);
  ASSERT_EQ(RemoveFadeIn(unit, context_), Result::kDone);
  EXPECT_EQ(unit.state.sequences.size(), 1U);
  EXPECT_EQ(AlphasOf(unit, 0), (PixelTypeValues{0, 15, 15, 15}));

  SubpictureUnit hidden = Parsed(Plain(105));
  ASSERT_EQ(AddFadeIn(hidden, false, context_), Result::kDone);
  ASSERT_EQ(HideUnit(hidden), Result::kDone);
  ASSERT_EQ(RemoveFadeIn(hidden, context_), Result::kDone);
  EXPECT_EQ(hidden.state.sequences.size(), 2U);
  EXPECT_EQ(AlphasOf(hidden, 0), PixelTypeValues{});
}

TEST_F(FadeTest, IsRecognisedOnADiscOpenedAgain) {
  SpuDescription description = Plain(200);
  description.spareBytes = 9;
  const auto packs = MakeSubpicturePacks(BuildSpu(description), {});
  PackDisc disc(packs);
  SubpictureUnit unit = disc.GatherOne();
  const auto content = ContentOf(unit);
  const int room = unit.state.TotalSize() + unit.state.freeRoom;
  ASSERT_EQ(AddFadeIn(unit, false, disc.Context()), Result::kDone);
  const auto faded = ContentOf(unit);
  ASSERT_EQ(disc.Write(unit), Result::kDone);

  SubpictureUnit again = disc.GatherOne();
  EXPECT_EQ(ContentOf(again), faded);
  ASSERT_EQ(RemoveFadeIn(again, disc.Context()), Result::kDone);
  EXPECT_EQ(ContentOf(again), content);
  ASSERT_EQ(disc.Write(again), Result::kDone);
  const SubpictureUnit last = disc.GatherOne();
  EXPECT_EQ(ContentOf(last), content);
  EXPECT_EQ(last.state.TotalSize() + last.state.freeRoom, room);
}

}  // namespace
}  // namespace quillomar
