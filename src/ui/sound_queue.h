#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <span>

namespace quillomar {

// Samples on their way to a sound device, and how far it has come with them. One thread adds,
// another one takes.
class SoundQueue {
 public:
  static constexpr std::size_t kPairSize = 4;  // bytes

  // Begins anew, empty.
  void Restart(int sampleRate);
  // Takes as many pairs as there is room for; returns how many.
  std::size_t Add(std::span<const std::int16_t> samples);
  // Pairs taken and not heard yet; 0 from the moment the device has died.
  [[nodiscard]] std::size_t Unheard();
  // The device holds that many pairs that it has taken and not played yet.
  void NoteHeld(std::size_t pairs);
  // Nothing will be heard any more: everything is taken and dropped.
  void GiveUp();

  // Fills `data` with the next samples; returns how many bytes these are.
  std::size_t Take(std::span<char> data);

 private:
  using Clock = std::chrono::steady_clock;
  [[nodiscard]] bool HasDied(Clock::time_point now) const;

  mutable std::mutex mutex_;  // guards all
  std::deque<std::int16_t> waiting_;
  int sampleRate_ = 1;
  bool dead_ = false;
  std::size_t read_ = 0;    // pairs read by the device
  std::size_t played_ = 0;  // of these, played when last noted
  Clock::time_point noted_;
  Clock::time_point lastRead_;
};

}  // namespace quillomar
