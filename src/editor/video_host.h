#pragma once

#include <functional>

#include "video/audio_output.h"
#include "video/playback_options.h"

namespace quillomar {

// What the video needs of a front end that shows it.
class VideoHost {
 public:
  virtual ~VideoHost() = default;

  // Runs a function later on the thread that runs commands; for any thread to call.
  virtual void Post(std::function<void()> action) = 0;
  // Lets the front end live while a command waits, without taking new commands from the user.
  virtual void Pump() = 0;
  // Frame, subpicture or playback have changed in the view: show these anew.
  virtual void VideoChanged() = 0;
  // Where sound goes; null: nowhere.
  virtual AudioOutput* Sound() { return nullptr; }
  // Null: the real time.
  virtual PlaybackClock* Clock() { return nullptr; }
};

}  // namespace quillomar
