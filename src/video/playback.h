#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>

#include "video/audio_track.h"
#include "video/play_source.h"
#include "video/playback_options.h"

namespace quillomar {

// Plays from a picture on, until the end or until `stop` is set. Sound is the master: pictures are
// held or dropped to keep with it; where nothing is heard the clock goes on by itself.
class Playback {
 public:
  Playback(DiscReader& reader, PlaybackClock& clock, PlaybackOutlet outlet,
           const std::atomic<int>& audioStream, const std::atomic<bool>& stop);

  void Run(const PlayOptions& options);
  [[nodiscard]] const std::optional<VideoProperties>& Properties() const { return properties_; }

 private:
  void PlayOnce();
  [[nodiscard]] bool WantsMore();
  [[nodiscard]] bool SoundIsComplete() const;
  void Fill();
  void TakeDecoded();
  void Begin(std::int64_t time);
  // One decision about the next picture.
  void ShowOrWait();
  void Show(DecodedPicture picture);
  void ShowLastAsStill();
  void Discard(const DecodedPicture& picture);
  void WaitFor(const DecodedPicture& picture, std::int64_t ticks);
  void Drain();
  // The time that is on, in the set.
  [[nodiscard]] std::int64_t MediaTime();
  void Log(const char* what, std::int64_t videoTime, std::int64_t now);

  PlaybackClock& clock_;
  PlaybackOutlet outlet_;
  const std::atomic<int>& audioStream_;
  const std::atomic<bool>& stop_;
  PlaySource source_;
  AudioTrack audio_;
  PlayOptions options_;
  std::optional<VideoProperties> properties_;

  // Of one run from beginning to end.
  std::deque<DecodedPicture> pictures_;
  std::optional<DecodedPicture> shownLast_;
  std::deque<AudioBlock> earlySound_;  // decoded before the first picture gave the time
  bool atEnd_ = false;
  bool pastEnd_ = false;  // a picture beyond the end has come
  bool soundPastEnd_ = false;
  int packsPastEnd_ = 0;
  bool begun_ = false;
  int heardStream_ = kNoAudio;
  std::int64_t started_ = 0;         // by the clock, microseconds
  std::int64_t base_ = 0;            // media time at clock zero, ticks
  std::int64_t lastTime_ = 0;        // of the picture shown last
  std::int64_t lastEnd_ = 0;         // when it ends
  std::int64_t lastShown_ = 0;       // by the clock, microseconds
  std::int64_t loggedHolding_ = -1;  // time of the picture
  int shown_ = 0;
};

}  // namespace quillomar
