// Playback of authored discs against a clock of the test's own.

#include <gtest/gtest.h>

#include <cstdlib>

#include "video/fake_playback.h"
#include "video/video_disc.h"

namespace quillomar::test {
namespace {

constexpr int kAc3 = 0x80;
constexpr std::int64_t kSecond = 90000;

// Upward crossings of zero in a second of the left channel.
int Frequency(const std::vector<std::int16_t>& samples, std::size_t second) {
  constexpr std::size_t kRate = 48000;
  int crossings = 0;
  for (std::size_t i = second * kRate + 1; i < (second + 1) * kRate; ++i) {
    if (samples.at(2 * i - 2) < 0 && samples.at(2 * i) >= 0) ++crossings;
  }
  return crossings;
}

class PlaybackTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no discs";
    copy_.emplace("ntsc");
  }

  // From some seconds before the end of the first VOB.
  static PlayOptions Near(VideoDisc& disc, std::int64_t secondsBefore) {
    const auto units = disc.Units();
    const auto second = std::find_if(units.begin(), units.end(),
                                     [](const UnitPlace& unit) { return unit.vobId == 2; });
    PlayOptions options;
    const std::int64_t vobTicks = std::int64_t{599} * 3003;
    const auto start =
        static_cast<std::uint32_t>(second->vobStart + vobTicks - secondsBefore * kSecond);
    options.from = {units.front().lba, start, -std::int64_t{units.front().vobStart}};
    return options;
  }

  std::optional<DiscCopy> copy_;
  FakeClock clock_;
};

TEST_F(PlaybackTest, PicturesFollowOneAnotherOverTheEndOfAVob) {
  RecordingOutput sound(clock_);
  VideoDisc disc(copy_->TitleVobs(), &sound, &clock_);
  disc.engine.SelectAudio(kAc3);
  PlayOptions options = Near(disc, 4);
  options.endTime = std::int64_t{599} * 3003 + 4 * kSecond;
  const std::int64_t began = clock_.Now();
  const auto frames = disc.Play(options);
  ASSERT_NEAR(static_cast<double>(frames.size()), 240, 3);
  EXPECT_NEAR(static_cast<double>(clock_.Now() - began) * 1e-6, 8, 0.3);
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const auto index = static_cast<int>(frames[i]->globalTime / 3003);
    EXPECT_EQ(ReadCounter(*frames[i]), index < 599 ? 1000 + index : 2000 + index - 599);
    if (i > 0) {
      EXPECT_EQ(frames[i]->globalTime - frames[i - 1]->globalTime, 3003);
    }
  }
  EXPECT_NEAR(static_cast<double>(sound.recorded.size()) / 2 / 48000, 8, 0.35);
  EXPECT_NEAR(Frequency(sound.recorded, 1), 440, 2);
  EXPECT_NEAR(Frequency(sound.recorded, 5), 494, 2);
  EXPECT_EQ(disc.notifications, std::vector{ID_PLAYBACK_STOPPED});
  EXPECT_TRUE(disc.engine.CurrentFrame());
}

// A device whose second is three per cent shorter or longer draws the pictures after it.
TEST_F(PlaybackTest, SoundIsTheMaster) {
  for (const double speed : {0.97, 1.03}) {
    RecordingOutput sound(clock_, speed);
    VideoDisc disc(copy_->TitleVobs(), &sound, &clock_);
    disc.engine.SelectAudio(kAc3);
    PlayOptions options = Near(disc, 12);
    options.endTime = std::int64_t{599} * 3003 - 2 * kSecond;
    const std::int64_t began = clock_.Now();
    const std::int64_t start = *options.from.pts + options.from.timeOffset;
    disc.Play(options, [&](const VideoFrame& frame) {
      const auto heard = static_cast<std::int64_t>(sound.recorded.size() / 2 - sound.Queued());
      const std::int64_t ahead = frame.globalTime - start - heard * kSecond / 48000;
      EXPECT_LE(std::abs(ahead), 3003) << "at " << frame.globalTime;
    });
    EXPECT_NEAR(static_cast<double>(clock_.Now() - began) * 1e-6, 10 / speed, 0.1);
  }
}

TEST_F(PlaybackTest, PlaysByTheClockWithoutSound) {
  VideoDisc disc(copy_->TitleVobs(), nullptr, &clock_);
  disc.engine.SelectAudio(kAc3);
  PlayOptions options = Near(disc, 3);
  options.endTime = std::int64_t{599} * 3003;
  options.frameRate = 10;
  const std::int64_t began = clock_.Now();
  const auto frames = disc.Play(options);
  EXPECT_NEAR(static_cast<double>(clock_.Now() - began) * 1e-6, 3, 0.1);
  EXPECT_NEAR(static_cast<double>(frames.size()), 30, 2);
  EXPECT_EQ(disc.notifications, std::vector{ID_PLAYBACK_STOPPED});
}

// Each is one line for each picture concerned, with the numbers of that moment.
TEST_F(PlaybackTest, HoldsAndDropsToKeepWithTheSound) {
  RecordingOutput sound(clock_);
  VideoDisc disc(copy_->TitleVobs(), &sound, &clock_);
  disc.engine.SelectAudio(kAc3);
  PlayOptions options = Near(disc, 6);
  options.endTime = std::int64_t{599} * 3003 - 3 * kSecond;
  int shown = 0;
  const auto frames = disc.Play(options, [&](const VideoFrame&) {
    ++shown;
    if (shown == 20) clock_.Sleep(200000);  // a busy machine
    if (shown == 60) sound.Stall(200000);
  });
  int discarded = 0;
  int held = 0;
  for (const std::string& line : disc.messages.LogLines()) {
    if (line.find(" ms Discarding frame VPTS ") != std::string::npos) ++discarded;
    if (line.find(" ms Holding frame VPTS ") != std::string::npos) ++held;
  }
  EXPECT_GE(discarded, 4);
  EXPECT_LE(discarded, 8);
  EXPECT_GE(held, 1);
  EXPECT_LE(held, 3);
  EXPECT_NEAR(static_cast<double>(frames.size()) + discarded, 90, 3);
}

TEST_F(PlaybackTest, SwitchesSoundWhilePlaying) {
  RecordingOutput sound(clock_);
  VideoDisc disc(copy_->TitleVobs(), &sound, &clock_);
  disc.engine.SelectAudio(kAc3);
  PlayOptions options = Near(disc, 6);
  options.endTime = std::int64_t{599} * 3003 - 2 * kSecond;
  int shown = 0;
  std::size_t silentFrom = 0;
  disc.Play(options, [&](const VideoFrame&) {
    ++shown;
    if (shown == 30) disc.engine.SelectAudio(kNoAudio);
    if (shown == 45) silentFrom = sound.recorded.size();
    if (shown == 60) {
      EXPECT_EQ(sound.recorded.size(), silentFrom);
      disc.engine.SelectAudio(kAc3);
    }
  });
  EXPECT_NEAR(shown, 120, 2);
  EXPECT_GT(sound.recorded.size(), silentFrom + 48000);
}

}  // namespace
}  // namespace quillomar::test
