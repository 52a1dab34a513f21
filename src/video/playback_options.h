#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "video/audio_output.h"
#include "video/decoder_log.h"
#include "video/video_frame.h"

namespace quillomar {

inline constexpr int kNoAudio = 0;

struct PlayOptions {
  FrameRequest from;                    // first picture
  std::optional<std::int64_t> endTime;  // ticks from the start of the set; nothing: the set's end
  bool loop = false;                    // begin anew at the end
  double frameRate = 0;                 // pictures shown in a second at most; 0: all
};

// Time as playback sees it; a test may put its own in place.
class PlaybackClock {
 public:
  virtual ~PlaybackClock() = default;
  // Microseconds; only differences mean anything.
  virtual std::int64_t Now() = 0;
  virtual void Sleep(std::int64_t microseconds) = 0;
};

// What playback gives out, all on the decoding thread.
struct PlaybackOutlet {
  std::function<void(FramePointer)> show;
  LogSink log;
  // The audio stream chosen turned out to be of a kind that cannot be played. May come often.
  std::function<void()> soundRefused;
  AudioOutput* audio = nullptr;
};

}  // namespace quillomar
