#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "video/audio_decoder.h"
#include "video/audio_output.h"

namespace quillomar {

// Brings decoded sound to the output in unbroken order: gaps become silence, what comes twice is
// cut. Without an output, or with one that does not open, it takes everything and is never heard.
class AudioTrack {
 public:
  explicit AudioTrack(AudioOutput* output) : output_(output) {}
  ~AudioTrack() { Reset(); }
  AudioTrack(const AudioTrack&) = delete;
  AudioTrack& operator=(const AudioTrack&) = delete;

  // Falls silent and gives the output back.
  void Reset();
  // What is added next is heard no earlier than `time`.
  void StartAt(std::int64_t time);
  // `now` is the time that is on; where nothing is left to be heard, what comes too late is cut.
  void Add(AudioBlock block, std::int64_t now);
  // Takes back what the output has not taken yet, for sound of another stream to follow.
  void DropPending();
  // Hands on as much as the output takes.
  void Pump();
  // Time that is being heard, 90 kHz; nothing while nothing is.
  [[nodiscard]] std::optional<std::int64_t> HeardTime();
  // Sound not yet heard, ms.
  [[nodiscard]] int QueuedMs();
  // Pairs heard and written since the output was opened.
  [[nodiscard]] int ReadPosition();
  [[nodiscard]] int WritePosition() const { return static_cast<int>(written_); }
  [[nodiscard]] bool Playing() const { return open_; }

 private:
  bool OpenFor(int sampleRate);
  [[nodiscard]] std::int64_t TicksOf(std::size_t pairs) const;
  [[nodiscard]] std::size_t PairsOf(std::int64_t ticks) const;

  AudioOutput* output_;
  bool open_ = false;
  bool failed_ = false;
  int sampleRate_ = 0;
  std::vector<std::int16_t> pending_;  // not taken by the output yet
  std::int64_t endTime_ = 0;           // of the last pair added
  std::size_t written_ = 0;            // pairs
};

}  // namespace quillomar
