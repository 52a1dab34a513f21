#pragma once

#include <algorithm>
#include <atomic>
#include <vector>

#include "video/playback_options.h"

namespace quillomar::test {

// A clock that stands still but while somebody sleeps.
class FakeClock : public PlaybackClock {
 public:
  std::int64_t Now() override { return now_; }
  void Sleep(std::int64_t microseconds) override { now_ += microseconds; }

 private:
  std::atomic<std::int64_t> now_ = 0;
};

// A sound device with a buffer of a quarter of a second that keeps what it plays. Its crystal may
// be off by `speed`.
class RecordingOutput final : public AudioOutput {
 public:
  explicit RecordingOutput(PlaybackClock& clock, double speed = 1) : clock_(clock), speed_(speed) {}

  bool Open(int sampleRate) override {
    sampleRate_ = sampleRate;
    opened_ = clock_.Now();
    taken_ = 0;
    starved_ = 0;
    return true;
  }
  std::size_t Write(std::span<const std::int16_t> samples) override {
    const std::size_t room = static_cast<std::size_t>(sampleRate_) / 4 - Queued();
    const std::size_t pairs = std::min(room, samples.size() / kChannels);
    // A device that ran dry goes on from now, not from when it was opened.
    if (Queued() == 0) starved_ = Elapsed() - static_cast<std::int64_t>(taken_);
    taken_ += pairs;
    const auto end = samples.begin() + static_cast<std::ptrdiff_t>(pairs * kChannels);
    recorded.insert(recorded.end(), samples.begin(), end);
    return pairs;
  }
  std::size_t Queued() override {
    const std::int64_t left = static_cast<std::int64_t>(taken_) + starved_ - Elapsed();
    return static_cast<std::size_t>(std::max<std::int64_t>(left, 0));
  }
  void Close() override { ++closed; }
  // The device makes no progress for that long, microseconds.
  void Stall(std::int64_t duration) { opened_ += duration; }

  std::vector<std::int16_t> recorded;
  int closed = 0;

 private:
  std::int64_t Elapsed() {
    return static_cast<std::int64_t>(static_cast<double>(clock_.Now() - opened_) * 1e-6 *
                                     sampleRate_ * speed_);
  }

  PlaybackClock& clock_;
  double speed_;
  int sampleRate_ = 1;
  std::int64_t opened_ = 0;
  std::size_t taken_ = 0;     // pairs
  std::int64_t starved_ = 0;  // pairs of time without sound
};

}  // namespace quillomar::test
