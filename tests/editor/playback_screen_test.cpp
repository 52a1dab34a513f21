#include "editor/playback_screen.h"

#include "support/unit_test.h"

namespace quillomar::test {
namespace {

constexpr int kDelay = 10;  // of the second sequence; the third stops after twice that

class PlaybackScreenTest : public UnitTest {
 protected:
  // Two rows of pattern pixels; from column 102 of the second on a band makes them fainter.
  std::shared_ptr<SubpictureUnit> MakeBanded(std::int64_t time) {
    SpuDescription description = Subtitle({"1111", "1111"}, 100, 200, 2 * kDelay);
    description.sequences[0].commands.push_back(
        ColconCommand({{201, 201, {{102, {0, 3, 0, 0}, {0, 7, 7, 7}}}}}));
    description.sequences.insert(description.sequences.begin() + 1,
                                 {kDelay, {ContrastCommand({0, 8, 8, 8})}});
    auto unit = std::make_shared<SubpictureUnit>(Decoded(description));
    unit->globalTime = time;
    return unit;
  }
  SubpicturePicture At(const SubpictureUnit& unit, int delay) {
    return ComposePlayed(unit, MomentOf(unit, std::int64_t{delay} * kDelayUnitTicks), &clut_,
                         preferences_, {});
  }
  static int Alpha(const SubpicturePicture& picture, std::size_t pixel) {
    return picture.rgba.at(pixel * 4 + 3);
  }

  Preferences preferences_;
  ClutRecord clut_;
};

TEST_F(PlaybackScreenTest, SequencesAndBandsShowAsAPlayerShowsThem) {
  clut_.entries.at(3) = ToYCrCb({200, 10, 20});
  const auto unit = MakeBanded(0);
  EXPECT_FALSE(MomentOf(*unit, -1).on);
  const SubpicturePicture first = At(*unit, 0);
  ASSERT_EQ(first.rgba.size(), 4U * 8);
  EXPECT_EQ(Alpha(first, 0), 255);
  EXPECT_EQ(Alpha(first, 5), 255);
  EXPECT_EQ(Alpha(first, 6), 7 * 17);
  EXPECT_NEAR(first.rgba.at(6 * 4), 200, 3);
  EXPECT_NE(first.rgba.at(5 * 4), first.rgba.at(6 * 4));
  const SubpicturePicture fainter = At(*unit, kDelay);
  EXPECT_EQ(Alpha(fainter, 0), 8 * 17);
  EXPECT_EQ(Alpha(fainter, 7), 7 * 17);
  EXPECT_FALSE(MomentOf(*unit, 2 * kDelay * kDelayUnitTicks).on);
}

TEST_F(PlaybackScreenTest, TheNextUnitTakesThePlaceOfOneThatIsStillOn) {
  const auto first = MakeBanded(1000);
  const auto second = MakeBanded(1000 + kDelay * kDelayUnitTicks / 2);
  PlaybackScreen screen;
  screen.Load({second, first});
  int painted = 0;
  const auto paint = [&](const UnitPointer& unit, const UnitMoment& moment) {
    ++painted;
    return ComposePlayed(*unit, moment, &clut_, preferences_, {});
  };
  EXPECT_TRUE(screen.MoveTo(0, paint));
  EXPECT_EQ(screen.Unit(), nullptr);
  EXPECT_TRUE(screen.MoveTo(1000, paint));
  EXPECT_FALSE(screen.MoveTo(1001, paint));
  EXPECT_EQ(screen.Unit(), first);
  EXPECT_TRUE(screen.MoveTo(second->globalTime, paint));
  EXPECT_EQ(screen.Unit(), second);
  EXPECT_EQ(painted, 2);
  EXPECT_TRUE(screen.MoveTo(second->globalTime + 2 * kDelay * kDelayUnitTicks, paint));
  EXPECT_TRUE(screen.Picture().rgba.empty());
  // Back to the beginning of a loop.
  EXPECT_TRUE(screen.MoveTo(1000, paint));
  EXPECT_FALSE(screen.Picture().rgba.empty());
}

}  // namespace
}  // namespace quillomar::test
