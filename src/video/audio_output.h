#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quillomar {

// Where sound goes: 16-bit stereo samples. Used on the decoding thread alone, from the first Open
// to the last Close; nothing may block.
class AudioOutput {
 public:
  static constexpr std::size_t kChannels = 2;

  virtual ~AudioOutput() = default;
  // Begins anew at that many samples a second. False without a device that can do it.
  virtual bool Open(int sampleRate) = 0;
  // Takes as many interleaved sample pairs as there is room for, from the first on; returns how
  // many pairs.
  virtual std::size_t Write(std::span<const std::int16_t> samples) = 0;
  // Pairs taken since Open that have not been heard yet.
  [[nodiscard]] virtual std::size_t Queued() = 0;
  // Falls silent at once.
  virtual void Close() = 0;
};

}  // namespace quillomar
