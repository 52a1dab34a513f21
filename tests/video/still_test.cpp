// The picture behind a subpicture, on authored discs with a counter burnt into their video.

#include <gtest/gtest.h>

#include <algorithm>

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

TEST_P(StillTest, PicturesAreThoseOfTheFfmpegProgram) {
  constexpr int kPictures = 180;
  const DiscCopy copy(GetParam());
  VideoDisc disc(copy.TitleVobs());
  std::map<int, FramePointer> shown;  // by number
  for (const UnitPlace& unit : disc.Units()) {
    const FramePointer frame = disc.Show({unit.lba, unit.pts});
    if (unit.vobId == 1)
      shown[ReadCounter(*frame) - ReadTruth(GetParam()).at(1).firstCounter] = frame;
  }
  const std::string command = "ffmpeg -v error -nostdin -i '" + copy.TitleVobs().front() +
                              "' -map 0:v -frames:v " + std::to_string(kPictures) +
                              " -vsync passthrough -sws_flags bilinear+accurate_rnd+full_chroma_int"
                              " -f rawvideo -pix_fmt rgb24 -";
  FILE* const pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  Bytes expected(shown.begin()->second->rgb.size());
  int compared = 0;
  for (int i = 0; std::fread(expected.data(), expected.size(), 1, pipe) == 1; ++i) {
    if (shown.count(i) == 0) continue;
    EXPECT_TRUE(shown[i]->rgb == expected) << "picture " << i;
    ++compared;
  }
  EXPECT_EQ(pclose(pipe), 0);
  EXPECT_GT(compared, 3);
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
