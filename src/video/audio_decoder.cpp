#include "video/audio_decoder.h"

#include <deque>

#include "base/format.h"
#include "dvd/big_endian.h"
#include "dvd/pack.h"

namespace quillomar {
namespace {

constexpr int kStreamsOfKind = 8;

bool InRange(int id, int first) {
  return id >= first && id < first + kStreamsOfKind;
}

// Samples are big-endian and need no decoding.
class LpcmDecoder final : public AudioDecoder {
 public:
  void Feed(ByteSpan payload, std::optional<std::int64_t> time) override {
    if (payload.size() <= kLpcmHeaderSize) return;
    const int rate = SampleRateOf(payload[kLpcmFormatOffset]);
    refused_ = refused_ || rate == 0;
    if (rate == 0) return;
    if (time) nextTime_ = time;
    if (!nextTime_) return;
    constexpr std::size_t kPairSize = 4;
    const ByteSpan data = payload.subspan(kLpcmHeaderSize);
    AudioBlock block{*nextTime_, rate, {}};
    const std::size_t samples = data.size() / kPairSize * 2;
    for (std::size_t i = 0; i < samples; ++i) {
      block.samples.push_back(static_cast<std::int16_t>(GetShort(data, 2 * i)));
    }
    *nextTime_ += static_cast<std::int64_t>(samples / 2) * 90000 / rate;
    blocks_.push_back(std::move(block));
  }

  std::optional<AudioBlock> Take() override {
    if (blocks_.empty()) return std::nullopt;
    AudioBlock block = std::move(blocks_.front());
    blocks_.pop_front();
    return block;
  }

  bool Refused() const override { return refused_; }

 private:
  // 0 for what is not 16-bit stereo at a rate that can be played.
  static int SampleRateOf(std::uint8_t format) {
    constexpr int kStereo = 1;
    const bool playable = format >> 6 == 0 && (format & 7) == kStereo;
    const int code = format >> 4 & 3;
    if (!playable) return 0;
    return code == 0 ? 48000 : code == 2 ? 44100 : 0;
  }

  std::deque<AudioBlock> blocks_;
  std::optional<std::int64_t> nextTime_;
  bool refused_ = false;
};

}  // namespace

std::unique_ptr<AudioDecoder> MakeLpcmDecoder() {
  return std::make_unique<LpcmDecoder>();
}

std::unique_ptr<AudioDecoder> MakeAudioDecoder(int subStreamId, LogSink log) {
  if (InRange(subStreamId, kFirstAc3Id)) return MakeAc3Decoder(std::move(log));
  if (InRange(subStreamId, kFirstLpcmId)) return MakeLpcmDecoder();
  return nullptr;
}

std::string AudioLabel(const AudioStreamInfo& info) {
  if (info.coding == "Mpeg1" || info.coding == "Mpeg2") return "MPEG Audio (can't play)";
  if (info.coding == "DTS") return "DTS (can't play)";
  return Format("%s %s %dch", info.coding.c_str(), info.language.c_str(), info.channels);
}

std::optional<int> AudioStreamOf(SectorView pack) {
  if (ClassifyPack(pack).kind != PackKind::kAudio || IsScrambled(pack)) return std::nullopt;
  const ByteSpan payload = PesPayload(pack);
  if (payload.empty()) return std::nullopt;
  return payload.front();
}

}  // namespace quillomar
