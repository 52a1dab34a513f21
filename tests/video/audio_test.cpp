// Sound decoders and the way of sound to its output.

#include <gtest/gtest.h>

#include "video/audio_decoder.h"
#include "video/audio_track.h"
#include "video/fake_playback.h"

namespace quillomar::test {
namespace {

Bytes LpcmPayload(std::uint8_t format, const std::vector<int>& samples) {
  Bytes bytes{0xA0, 1, 0, 1, 0, format, 0x80};
  for (const int sample : samples) {
    bytes.push_back(static_cast<std::uint8_t>(sample >> 8));
    bytes.push_back(static_cast<std::uint8_t>(sample));
  }
  return bytes;
}

TEST(Lpcm, SixteenBitStereoOnly) {
  struct Case {
    std::uint8_t format;
    int rate;  // 0: refused
  };
  for (const Case& test : {Case{0x01, 48000}, Case{0x21, 44100}, Case{0x11, 0}, Case{0x41, 0},
                           Case{0x00, 0}, Case{0x05, 0}}) {
    const auto decoder = MakeAudioDecoder(0xA3);
    decoder->Feed(LpcmPayload(test.format, {1, -2, 300, -32768}), 9000);
    const auto block = decoder->Take();
    EXPECT_EQ(decoder->Refused(), test.rate == 0);
    ASSERT_EQ(block.has_value(), test.rate != 0);
    if (!block) continue;
    EXPECT_EQ(block->sampleRate, test.rate);
    EXPECT_EQ(block->time, 9000);
    EXPECT_EQ(block->samples, (std::vector<std::int16_t>{1, -2, 300, -32768}));
  }
}

TEST(AudioDecoders, AnyPayloadIsHarmless) {
  for (const int id : {0x80, 0xA0}) {
    const auto decoder = MakeAudioDecoder(id);
    for (std::size_t size = 0; size < 40; ++size) {
      decoder->Feed(Bytes(size, 0x0B), std::nullopt);
      decoder->Feed(Bytes(size, 0x77), 5);
    }
    while (decoder->Take()) {
    }
  }
  EXPECT_EQ(MakeAudioDecoder(0x88), nullptr);
  EXPECT_EQ(MakeAudioDecoder(0), nullptr);
}

TEST(AudioTrack, GapsBecomeSilenceAndRepeatsAreCut) {
  FakeClock clock;
  RecordingOutput output(clock);
  AudioTrack track(&output);
  const auto block = [](std::int64_t time, std::int16_t value) {
    return AudioBlock{time, 48000, std::vector<std::int16_t>(960, value)};  // 10 ms, 900 ticks
  };
  track.StartAt(1000);
  track.Add(block(460, 1), 1000);  // 60 % before the start
  track.Add(block(1360, 2), 1000);
  track.Add(block(4060, 3), 1000);  // 20 ms late
  track.Add(block(4060, 4), 1000);  // again
  track.Add(block(4970, 5), 1000);  // rounding is no gap
  track.Pump();
  track.Add(block(5870, 6), 1000);
  track.DropPending();
  std::vector<std::int16_t> expected(384, 1);
  expected.insert(expected.end(), 960, 2);
  expected.insert(expected.end(), 1920, 0);
  expected.insert(expected.end(), 960, 3);
  expected.insert(expected.end(), 960, 5);
  EXPECT_EQ(output.recorded, expected);
  EXPECT_EQ(track.HeardTime(), 1010);  // all of it is still in the device
  clock.Sleep(10000);
  EXPECT_EQ(track.HeardTime(), 1910);
  EXPECT_EQ(track.ReadPosition(), 480);
  // The device runs dry, and the clock goes on without it.
  clock.Sleep(1000000);
  output.recorded.clear();
  track.Add(block(5870, 7), 6500);  // 70 % too late
  track.Pump();
  EXPECT_EQ(output.recorded, std::vector<std::int16_t>(288, 7));
  EXPECT_EQ(track.HeardTime(), 6500);
}

}  // namespace
}  // namespace quillomar::test
