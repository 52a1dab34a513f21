// The AC-3 decoder, by FFmpeg's libraries.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <array>
#include <deque>

#include "video/audio_decoder.h"

#include "video/ffmpeg_owners.h"

namespace quillomar {
namespace {

constexpr std::int64_t kClock = 90000;

struct FreeMixer {
  void operator()(SwrContext* mixer) const { swr_free(&mixer); }
};

class Ac3Decoder final : public AudioDecoder {
 public:
  explicit Ac3Decoder(LogSink log);
  void Feed(ByteSpan payload, std::optional<std::int64_t> time) override;
  std::optional<AudioBlock> Take() override;

 private:
  void Decode(std::uint8_t* unit, int size, std::int64_t time);
  void Queue();
  bool MakeMixer();

  DecoderLog log_;
  std::unique_ptr<AVCodecParserContext, CloseParser> parser_;
  std::unique_ptr<AVCodecContext, FreeContext> context_;
  std::unique_ptr<AVPacket, FreePacket> packet_{av_packet_alloc()};
  std::unique_ptr<AVFrame, FreeFrame> frame_{av_frame_alloc()};
  std::unique_ptr<SwrContext, FreeMixer> mixer_;
  int mixedChannels_ = 0;
  int mixedRate_ = 0;
  std::vector<std::uint8_t> input_;
  std::deque<AudioBlock> blocks_;
  std::optional<std::int64_t> nextTime_;
};

Ac3Decoder::Ac3Decoder(LogSink log) : log_("AC-3 decoder", std::move(log)) {
  const AVCodec* const codec = avcodec_find_decoder(AV_CODEC_ID_AC3);
  if (codec == nullptr) return;
  parser_.reset(av_parser_init(AV_CODEC_ID_AC3));
  context_.reset(avcodec_alloc_context3(codec));
  if (!context_) return;
  log_.ListenTo(*context_);
  if (avcodec_open2(context_.get(), codec, nullptr) < 0) context_.reset();
}

void Ac3Decoder::Feed(ByteSpan payload, std::optional<std::int64_t> time) {
  if (!parser_ || !context_ || payload.size() <= kAudioHeaderSize) return;
  const ByteSpan bytes = payload.subspan(kAudioHeaderSize);
  input_.assign(bytes.begin(), bytes.end());
  input_.resize(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE);
  std::int64_t stamp = time.value_or(AV_NOPTS_VALUE);
  std::size_t position = 0;
  while (position < bytes.size()) {
    std::uint8_t* unit = nullptr;
    int unitSize = 0;
    const int used =
        av_parser_parse2(parser_.get(), context_.get(), &unit, &unitSize, input_.data() + position,
                         static_cast<int>(bytes.size() - position), stamp, AV_NOPTS_VALUE, 0);
    if (used < 0 || (used == 0 && unitSize == 0)) return;
    stamp = AV_NOPTS_VALUE;
    position += static_cast<std::size_t>(used);
    if (unitSize > 0) Decode(unit, unitSize, parser_->pts);
  }
}

void Ac3Decoder::Decode(std::uint8_t* unit, int size, std::int64_t time) {
  packet_->data = unit;
  packet_->size = size;
  packet_->pts = time;
  if (avcodec_send_packet(context_.get(), packet_.get()) == 0) {
    while (avcodec_receive_frame(context_.get(), frame_.get()) >= 0) Queue();
  }
  packet_->data = nullptr;
  packet_->size = 0;
}

// Follows the stream where its channels or rate change.
bool Ac3Decoder::MakeMixer() {
  const int channels = frame_->ch_layout.nb_channels;
  if (mixer_ && channels == mixedChannels_ && frame_->sample_rate == mixedRate_) return true;
  AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
  SwrContext* mixer = nullptr;
  swr_alloc_set_opts2(&mixer, &stereo, AV_SAMPLE_FMT_S16, frame_->sample_rate, &frame_->ch_layout,
                      static_cast<AVSampleFormat>(frame_->format), frame_->sample_rate, 0, nullptr);
  mixer_.reset(mixer);
  mixedChannels_ = channels;
  mixedRate_ = frame_->sample_rate;
  if (mixer == nullptr || swr_init(mixer) < 0) mixer_.reset();
  return mixer_ != nullptr;
}

void Ac3Decoder::Queue() {
  if (frame_->pts != AV_NOPTS_VALUE) nextTime_ = frame_->pts;
  if (!nextTime_ || frame_->sample_rate <= 0 || !MakeMixer()) return;
  AudioBlock block{*nextTime_, frame_->sample_rate, {}};
  block.samples.resize(static_cast<std::size_t>(frame_->nb_samples) * 2);
  std::array<std::uint8_t*, 1> target = {reinterpret_cast<std::uint8_t*>(block.samples.data())};
  const int pairs =
      swr_convert(mixer_.get(), target.data(), frame_->nb_samples,
                  const_cast<const std::uint8_t**>(frame_->extended_data), frame_->nb_samples);
  block.samples.resize(static_cast<std::size_t>(std::max(pairs, 0)) * 2);
  *nextTime_ += kClock * frame_->nb_samples / frame_->sample_rate;
  blocks_.push_back(std::move(block));
}

std::optional<AudioBlock> Ac3Decoder::Take() {
  if (blocks_.empty()) return std::nullopt;
  AudioBlock block = std::move(blocks_.front());
  blocks_.pop_front();
  return block;
}

}  // namespace

std::unique_ptr<AudioDecoder> MakeAc3Decoder(LogSink log) {
  return std::make_unique<Ac3Decoder>(std::move(log));
}

}  // namespace quillomar
