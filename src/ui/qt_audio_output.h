#pragma once

#include <QThread>
#include <chrono>
#include <memory>
#include <mutex>

#include "video/audio_output.h"

namespace quillomar {

class SoundPlayer;

// Sound by the system's default device. The device is served on a thread of its own; between that
// and the decoding thread lies a short queue, so that neither waits for the other.
class QtAudioOutput final : public AudioOutput {
 public:
  QtAudioOutput();
  ~QtAudioOutput() override;

  bool Open(int sampleRate) override;
  std::size_t Write(std::span<const std::int16_t> samples) override;
  std::size_t Queued() override;
  void Close() override;

 private:
  QThread thread_;
  SoundPlayer* player_;  // lives on thread_, which deletes it
};

}  // namespace quillomar
