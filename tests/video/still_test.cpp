// The picture behind a subpicture, on authored discs with a counter burnt into their video.

#include <gtest/gtest.h>

#include <algorithm>

#include "video/linear_decode.h"
#include "video/video_disc.h"
#include "video/vobu_walk.h"

namespace quillomar::test {
namespace {

int FrameTicksOf(const std::string& disc) {
  return disc == "pal" ? 3600 : 3003;
}

// The counter of the picture on the screen at a time.
int ExpectedCounter(const UnitPlace& unit, const VobTruth& vob, int frameTicks) {
  const int index = TicksBetween(unit.vobStart, unit.pts) / frameTicks;
  return vob.firstCounter + std::min(index, vob.frames - 1);
}

class StillTest : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no discs";
  }
};

TEST_P(StillTest, ShowsThePictureOfTheUnitsTime) {
  const DiscCopy copy(GetParam());
  VideoDisc disc(copy.TitleVobs());
  const auto truth = ReadTruth(GetParam());
  const auto units = disc.Units();
  ASSERT_GE(units.size(), 30U);
  int inEarlierVobu = 0;
  for (const UnitPlace& unit : units) {
    const FramePointer frame = disc.Show({unit.lba, unit.pts});
    ASSERT_TRUE(frame) << unit.lba;
    EXPECT_EQ(ReadCounter(*frame),
              ExpectedCounter(unit, truth.at(unit.vobId), FrameTicksOf(GetParam())))
        << "unit at " << unit.lba << " pts " << unit.pts;
    if (frame->navLba < unit.navLba) ++inEarlierVobu;
    EXPECT_LE(disc.engine.RememberedBytes(), VideoEngine::kMemoryBudget);
  }
  EXPECT_GT(inEarlierVobu, 0) << "no unit puts the search to the test";
  EXPECT_EQ(disc.notifications, std::vector(units.size(), ID_SECTOR_HIT));
}

TEST_P(StillTest, PicturesAreThoseOfALinearDecode) {
  const DiscCopy copy(GetParam());
  VideoDisc disc(copy.TitleVobs());
  std::vector<std::uint32_t> times;
  std::vector<FramePointer> frames;
  for (const UnitPlace& unit : disc.Units()) {
    if (unit.vobId != 1 || unit.pts > unit.vobStart + 6 * 90000) continue;
    times.push_back(unit.pts);
    frames.push_back(disc.Show({unit.lba, unit.pts}));
  }
  ASSERT_GT(times.size(), 3U);
  const auto expected = DecodeLinearly(copy.TitleVobs().front(), times);
  for (std::size_t i = 0; i < times.size(); ++i) {
    ASSERT_TRUE(frames[i]);
    EXPECT_TRUE(frames[i]->rgb == expected[i]) << "pts " << times[i];
  }
}

TEST_P(StillTest, StepsOverVobuAndVobEnds) {
  const DiscCopy copy(GetParam());
  VideoDisc disc(copy.TitleVobs());
  const auto truth = ReadTruth(GetParam());
  const auto units = disc.Units();
  // From a picture near the end of the first VOB into the second, and back.
  const auto second = std::find_if(units.begin(), units.end(),
                                   [](const UnitPlace& unit) { return unit.vobId == 2; });
  ASSERT_NE(second, units.end());
  FramePointer frame = disc.Show({second->lba, second->vobStart});
  std::int64_t time = frame->globalTime;
  const int first = truth.at(2).firstCounter;
  ASSERT_EQ(ReadCounter(*frame), first);
  for (int expected : {truth.at(1).firstCounter + truth.at(1).frames - 1,
                       truth.at(1).firstCounter + truth.at(1).frames - 2}) {
    frame = disc.Step(-1);
    EXPECT_EQ(ReadCounter(*frame), expected);
    EXPECT_EQ(time - frame->globalTime, FrameTicksOf(GetParam()));
    time = frame->globalTime;
  }
  for (int i = 0; i < 2; ++i) frame = disc.Step(1);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(ReadCounter(*frame), first + i);
    frame = disc.Step(1);
  }
}

TEST_P(StillTest, NearestIntraPictureBeginsAVobu) {
  const DiscCopy copy(GetParam());
  VideoDisc disc(copy.TitleVobs());
  const auto units = disc.Units();
  for (const UnitPlace& unit : {units[2], units[5], units[11]}) {
    const FramePointer frame = disc.Show({unit.lba, unit.pts, 0, FrameChoice::kNearestIntra});
    ASSERT_TRUE(frame);
    // The VOBUs of these discs are about half a second long and begin with their only I-picture.
    EXPECT_LE(std::abs(TicksBetween(unit.pts, frame->pts)), 30000);
    DiscReader reader(*disc.files, disc.set);
    VobuWalk walk(reader);
    const auto vobu = walk.At(frame->navLba);
    const auto next = walk.NextInVob(*vobu);
    EXPECT_TRUE(vobu->startTime == frame->pts || (next && next->startTime == frame->pts));
    EXPECT_EQ(ReadCounter(*frame), ReadCounter(*disc.Show({unit.lba, frame->pts})));
  }
}

TEST(MenuStillTest, MenuHasItsPicture) {
  if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no discs";
  const DiscCopy copy("menu");
  VideoDisc disc(copy.MenuVobs());
  const auto units = disc.Units();
  ASSERT_FALSE(units.empty());
  EXPECT_TRUE(disc.Show({units.front().lba, units.front().pts}));
  const auto properties = disc.engine.Properties();
  ASSERT_TRUE(properties);
  EXPECT_EQ(properties->height, 480);
  EXPECT_NEAR(properties->displayAspect, 4.0 / 3.0, 1e-9);
  EXPECT_NEAR(properties->frameRate, 30000.0 / 1001.0, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Discs, StillTest, testing::Values("ntsc", "pal", "split"),
                         [](const auto& disc) { return disc.param; });

}  // namespace
}  // namespace quillomar::test
