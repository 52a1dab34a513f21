#pragma once

#include <QIODevice>
#include <chrono>
#include <deque>
#include <mutex>
#include <span>

namespace quillomar {

// Samples on their way to a sound device that reads them from here, and how far it has come with
// them. One thread writes, another one reads.
class SoundQueue final : public QIODevice {
 public:
  static constexpr std::size_t kPairSize = 4;  // bytes

  SoundQueue() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }

  // Begins anew, empty.
  void Restart(int sampleRate);
  // Takes as many pairs as there is room for; returns how many.
  std::size_t Add(std::span<const std::int16_t> samples);
  // Pairs taken and not heard yet; 0 from the moment the device has died.
  [[nodiscard]] std::size_t Unheard();
  // The device holds that many pairs that it has read and not played yet.
  void NoteHeld(std::size_t pairs);
  // Nothing will be heard any more: everything is taken and dropped.
  void GiveUp();

  [[nodiscard]] bool isSequential() const override { return true; }
  [[nodiscard]] qint64 bytesAvailable() const override;

 protected:
  qint64 readData(char* data, qint64 size) override;
  qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

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
