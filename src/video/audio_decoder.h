#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "dvd/ifo_file.h"
#include "dvd/sector.h"
#include "video/decoder_log.h"

// Audio packs are packets of private stream 1. Their payload begins with the sub-stream id (u8),
// the number of audio frames that begin in the pack (u8) and the place of the first of them (u16,
// counted from that field's last byte). Linear PCM has three bytes more; the second tells bits per
// sample (2 bits: 0 is 16), sample rate (2 bits: 0 is 48,000, 2 is 44,100), one reserved bit and
// the channels less one (3 bits).
namespace quillomar {

inline constexpr std::size_t kAudioHeaderSize = 4;
inline constexpr std::size_t kLpcmFormatOffset = 5;
inline constexpr std::size_t kLpcmHeaderSize = 7;

// Decoded sound: interleaved 16-bit stereo.
struct AudioBlock {
  std::int64_t time = 0;  // of the first pair, 90 kHz
  int sampleRate = 0;
  std::vector<std::int16_t> samples;
};

// Decodes one audio stream.
class AudioDecoder {
 public:
  virtual ~AudioDecoder() = default;
  // Payload of one of the stream's packs, with its time stamp.
  virtual void Feed(ByteSpan payload, std::optional<std::int64_t> time) = 0;
  [[nodiscard]] virtual std::optional<AudioBlock> Take() = 0;
  // The stream is of a kind that cannot be played.
  [[nodiscard]] virtual bool Refused() const { return false; }
};

// For a sub-stream id 0x80 to 0x87 (AC-3) or 0xA0 to 0xA7 (linear PCM); null for any other.
[[nodiscard]] std::unique_ptr<AudioDecoder> MakeAudioDecoder(int subStreamId, LogSink log = {});
[[nodiscard]] std::unique_ptr<AudioDecoder> MakeAc3Decoder(LogSink log);
[[nodiscard]] std::unique_ptr<AudioDecoder> MakeLpcmDecoder();

// What a list of audio streams says of one; those that cannot be played say so.
[[nodiscard]] std::string AudioLabel(const AudioStreamInfo& info);

// Sub-stream id of an audio pack; nothing for any other pack.
[[nodiscard]] std::optional<int> AudioStreamOf(SectorView pack);

}  // namespace quillomar
