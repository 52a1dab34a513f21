// The picture behind a subpicture, on authored discs with a counter burnt into their video.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

#include "video/video_disc.h"
#include "video/vobu_walk.h"

namespace quillomar::test {
namespace {

// The counter of the picture on the screen at a unit's time. The three VOBs last these seconds and
// count from their number in thousands.
constexpr std::array kVobSeconds = {20, 12, 14};
int ExpectedCounter(const UnitPlace& unit, int frameTicks) {
  const int seconds = kVobSeconds.at(static_cast<std::size_t>(unit.vobId - 1));
  const int index = TicksBetween(unit.vobStart, unit.pts) / frameTicks;
  return 1000 * unit.vobId + std::min(index, seconds * 90000 / frameTicks - 1);
}

class StillTest : public DiscTest, public testing::WithParamInterface<std::string> {
 protected:
  std::string Name() const override { return GetParam(); }
  int FrameTicks() const { return Name() == "pal" ? 3600 : 3003; }
};

// The first pictures of a file as the ffmpeg program decodes them are compared with those shown,
// which go by their numbers from its start.
int CompareWithFfmpeg(const std::string& path, std::map<int, FramePointer>& shown) {
  const std::string command = "ffmpeg -v error -nostdin -i '" + path +
                              "' -map 0:v -frames:v 180 -vsync passthrough -sws_flags "
                              "bilinear+accurate_rnd+full_chroma_int -f rawvideo -pix_fmt rgb24 -";
  FILE* const pipe = popen(command.c_str(), "r");
  Bytes expected(shown.begin()->second->rgb.size());
  int compared = 0;
  for (int i = 0; std::fread(expected.data(), expected.size(), 1, pipe) == 1; ++i) {
    if (shown.count(i) == 0) continue;
    EXPECT_TRUE(shown[i]->rgb == expected) << "picture " << i;
    ++compared;
  }
  EXPECT_EQ(pclose(pipe), 0);
  return compared;
}

TEST_P(StillTest, ShowsThePictureOfTheUnitsTime) {
  VideoDisc disc(copy_->TitleVobs());
  const auto units = disc.Units();
  ASSERT_GE(units.size(), 30U);
  int inEarlierVobu = 0;
  std::map<int, FramePointer> ofFirstVob;
  for (const UnitPlace& unit : units) {
    const FramePointer frame = disc.Show(unit.Request());
    ASSERT_TRUE(frame) << unit.lba;
    const int counter = ExpectedCounter(unit, FrameTicks());
    EXPECT_EQ(ReadCounter(*frame), counter) << "unit at " << unit.lba << " pts " << unit.pts;
    if (frame->navLba < unit.navLba) ++inEarlierVobu;
    EXPECT_LE(disc.engine.RememberedBytes(), VideoEngine::kMemoryBudget);
    if (unit.vobId == 1) ofFirstVob[counter - 1000] = frame;
  }
  EXPECT_GT(inEarlierVobu, 0) << "no unit puts the search to the test";
  EXPECT_EQ(disc.notifications, std::vector(units.size(), ID_SECTOR_HIT));
  EXPECT_GT(CompareWithFfmpeg(copy_->TitleVobs().front(), ofFirstVob), 3);
}

TEST_P(StillTest, StepsOverVobuAndVobEnds) {
  VideoDisc disc(copy_->TitleVobs());
  const auto units = disc.Units();
  // From a picture near the end of the first VOB into the second, and back.
  const auto second = std::find_if(units.begin(), units.end(),
                                   [](const UnitPlace& unit) { return unit.vobId == 2; });
  ASSERT_NE(second, units.end());
  FramePointer frame = disc.Show({second->lba, second->vobStart});
  std::int64_t time = frame->globalTime;
  ASSERT_EQ(ReadCounter(*frame), 2000);
  const int last = 1000 + kVobSeconds[0] * 90000 / FrameTicks() - 1;
  for (const int expected : {last, last - 1}) {
    frame = disc.Step(-1);
    EXPECT_EQ(ReadCounter(*frame), expected);
    EXPECT_EQ(time - frame->globalTime, FrameTicks());
    time = frame->globalTime;
  }
  for (int i = 0; i < 2; ++i) frame = disc.Step(1);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(ReadCounter(*frame), 2000 + i);
    frame = disc.Step(1);
  }
}

TEST_P(StillTest, NearestIntraPictureBeginsAVobu) {
  VideoDisc disc(copy_->TitleVobs());
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
  EXPECT_TRUE(disc.Show(disc.Units().at(0).Request()));
  const auto properties = disc.engine.Properties().value_or(VideoProperties());
  EXPECT_EQ(properties.height, 480);
  EXPECT_NEAR(properties.displayAspect, 4.0 / 3.0, 1e-9);
  EXPECT_NEAR(properties.frameRate, 30000.0 / 1001.0, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Discs, StillTest, testing::Values("ntsc", "pal", "split"),
                         [](const auto& disc) { return disc.param; });

}  // namespace
}  // namespace quillomar::test
