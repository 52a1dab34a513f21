// Playback of authored discs against a clock of the test's own.

#include <gtest/gtest.h>

#include <cstdlib>

#include "video/fake_playback.h"
#include "video/video_disc.h"

namespace quillomar::test {
namespace {

constexpr int kAc3 = 0x80;
constexpr std::int64_t kSecond = 90000;
constexpr std::int64_t kVobTicks = std::int64_t{599} * 3003;

// Upward crossings of zero in a second of the left channel.
int Frequency(const std::vector<std::int16_t>& samples, std::size_t second) {
  constexpr std::size_t kRate = 48000;
  int crossings = 0;
  for (std::size_t i = second * kRate + 1; i < (second + 1) * kRate; ++i) {
    if (samples.at(2 * i - 2) < 0 && samples.at(2 * i) >= 0) ++crossings;
  }
  return crossings;
}

class PlaybackTest : public DiscTest {
 protected:
  // Plays from some seconds before to some seconds after the end of the first VOB.
  std::vector<FramePointer> Play(AudioOutput* output, double from, double to,
                                 const std::function<void(const VideoFrame&)>& onShown = {},
                                 double frameRate = 0) {
    disc_.emplace(copy_->TitleVobs(), output, &clock_);
    disc_->engine.SelectAudio(kAc3);
    const UnitPlace first = disc_->Units().front();
    PlayOptions options{{first.lba, {}, -std::int64_t{first.vobStart}}, {}, false, frameRate};
    options.from.pts = static_cast<std::uint32_t>(first.vobStart + kVobTicks + from * kSecond);
    options.endTime = kVobTicks + static_cast<std::int64_t>(to * kSecond);
    start_ = *options.from.pts + options.from.timeOffset;
    const std::int64_t began = clock_.Now();
    auto frames = disc_->Play(options, onShown);
    took_ = static_cast<double>(clock_.Now() - began) * 1e-6;
    EXPECT_EQ(disc_->notifications, std::vector{ID_PLAYBACK_STOPPED});
    return frames;
  }

  FakeClock clock_;
  RecordingOutput sound_{clock_};
  std::optional<VideoDisc> disc_;
  std::int64_t start_ = 0;  // in the set, ticks
  double took_ = 0;         // seconds
};

TEST_F(PlaybackTest, PicturesFollowOneAnotherOverTheEndOfAVob) {
  const auto frames = Play(&sound_, -4, 4);
  ASSERT_NEAR(static_cast<double>(frames.size()), 240, 3);
  EXPECT_NEAR(took_, 8, 0.3);
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const auto index = static_cast<int>(frames[i]->globalTime / 3003);
    EXPECT_EQ(ReadCounter(*frames[i]), index < 599 ? 1000 + index : 2000 + index - 599);
    if (i > 0) {
      EXPECT_EQ(frames[i]->globalTime - frames[i - 1]->globalTime, 3003);
    }
  }
  EXPECT_NEAR(static_cast<double>(sound_.recorded.size()) / 2 / 48000, 8, 0.35);
  EXPECT_NEAR(Frequency(sound_.recorded, 1), 440, 2);
  EXPECT_NEAR(Frequency(sound_.recorded, 5), 494, 2);
}

// A device whose second is three per cent shorter or longer draws the pictures after it.
TEST_F(PlaybackTest, SoundIsTheMaster) {
  for (const double speed : {0.97, 1.03}) {
    RecordingOutput sound(clock_, speed);
    Play(&sound, -12, -2, [&](const VideoFrame& frame) {
      const auto heard = static_cast<std::int64_t>(sound.recorded.size() / 2 - sound.Queued());
      const std::int64_t ahead = frame.globalTime - start_ - heard * kSecond / 48000;
      EXPECT_LE(std::abs(ahead), 3003) << "at " << frame.globalTime;
    });
    EXPECT_NEAR(took_, 10 / speed, 0.1);
  }
}

TEST_F(PlaybackTest, PlaysByTheClockWithoutSound) {
  const auto frames = Play(nullptr, -3, 0, {}, 10);
  EXPECT_NEAR(took_, 3, 0.1);
  EXPECT_NEAR(static_cast<double>(frames.size()), 30, 2);
}

// Each is one line for each picture concerned, with the numbers of that moment.
TEST_F(PlaybackTest, HoldsAndDropsToKeepWithTheSound) {
  int shown = 0;
  Play(&sound_, -6, -3, [&](const VideoFrame&) {
    ++shown;
    if (shown == 20) clock_.Sleep(200000);  // a busy machine
    if (shown == 60) sound_.Stall(200000);
  });
  int discarded = 0;
  int held = 0;
  for (const std::string& line : disc_->messages.LogLines()) {
    if (line.find(" ms Discarding frame VPTS ") != std::string::npos) ++discarded;
    if (line.find(" ms Holding frame VPTS ") != std::string::npos) ++held;
  }
  EXPECT_NEAR(discarded, 6, 2);
  EXPECT_NEAR(held, 2, 1);
  EXPECT_NEAR(shown + discarded, 90, 3);
}

TEST_F(PlaybackTest, SwitchesSoundWhilePlaying) {
  int shown = 0;
  std::size_t silentFrom = 0;
  Play(&sound_, -6, -2, [&](const VideoFrame&) {
    ++shown;
    if (shown == 30) disc_->engine.SelectAudio(kNoAudio);
    if (shown == 45) silentFrom = sound_.recorded.size();
    if (shown == 60) {
      EXPECT_EQ(sound_.recorded.size(), silentFrom);
      disc_->engine.SelectAudio(kAc3);
    }
  });
  EXPECT_NEAR(shown, 120, 2);
  EXPECT_GT(sound_.recorded.size(), silentFrom + 48000);
}

}  // namespace
}  // namespace quillomar::test
