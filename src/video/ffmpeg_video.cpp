// The video decoder, by FFmpeg's libraries.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <array>
#include <deque>

#include "video/deinterlace.h"
#include "video/video_decoder.h"

#include "video/ffmpeg_owners.h"

namespace quillomar {
namespace {

constexpr std::int64_t kClock = 90000;
// Nothing on a DVD is larger; a damaged header must not cost more memory than this.
constexpr std::int64_t kMostPixels = std::int64_t{1920} * 1152;
constexpr int kCroppedWidth = 704;  // the middle columns of a full picture

struct FreeScaler {
  void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
using FrameOwner = std::unique_ptr<AVFrame, FreeFrame>;

int FullHeight(int codedHeight) {
  constexpr int kHalfPal = 288;
  return codedHeight > 480 || codedHeight == kHalfPal ? 576 : 480;
}

void RemoveCombingOfPlanes(AVFrame& frame) {
  const int chromaHeight = (frame.height + 1) / 2;
  const int chromaWidth = (frame.width + 1) / 2;
  for (std::size_t plane = 0; plane < 3; ++plane) {
    const int height = plane == 0 ? frame.height : chromaHeight;
    const auto stride = static_cast<std::size_t>(frame.linesize[plane]);
    const std::span<std::uint8_t> samples(frame.data[plane],
                                          stride * static_cast<std::size_t>(height));
    RemoveCombing(samples, stride, plane == 0 ? frame.width : chromaWidth, height);
  }
}

// A frame of its own where the decoder still refers to the samples.
FrameOwner WithoutCombing(const AVFrame& frame) {
  FrameOwner copy(av_frame_clone(&frame));
  if (!copy || av_frame_make_writable(copy.get()) < 0) return nullptr;
  RemoveCombingOfPlanes(*copy);
  return copy;
}

VideoProperties ReadProperties(const AVCodecContext& context, const AVFrame& frame) {
  VideoProperties properties;
  properties.width = frame.width;
  properties.height = frame.height;
  properties.frameRate = av_q2d(context.framerate);
  properties.mpeg1 = context.codec_id == AV_CODEC_ID_MPEG1VIDEO;
  const double pixelAspect = av_q2d(frame.sample_aspect_ratio);
  if (pixelAspect > 0 && frame.height > 0) {
    const double display = pixelAspect * frame.width / frame.height;
    properties.displayAspect = display > 1.5 ? 16.0 / 9.0 : 4.0 / 3.0;
  }
  return properties;
}

std::int64_t DurationOf(const AVCodecContext& context, const AVFrame& frame) {
  const AVRational rate = context.framerate;
  if (rate.num <= 0 || rate.den <= 0) return 0;
  return kClock * rate.den * (2 + frame.repeat_pict) / (2 * std::int64_t{rate.num});
}

}  // namespace

struct VideoDecoder::Parts {
  explicit Parts(LogSink sink) : log("Video decoder", std::move(sink)) {}

  DecoderLog log;  // first, since the others speak until they end
  std::unique_ptr<AVCodecParserContext, CloseParser> parser;
  std::unique_ptr<AVCodecContext, FreeContext> context;
  std::unique_ptr<AVPacket, FreePacket> packet{av_packet_alloc()};
  std::unique_ptr<SwsContext, FreeScaler> scaler;
  std::vector<std::uint8_t> input;  // with the room behind it that the library reads over
  std::deque<DecodedPicture> pictures;
  std::size_t undated = 0;  // pictures at the end of the queue whose time is not known yet
  std::optional<std::int64_t> nextTime;
  std::int64_t startTime = 0;
  std::optional<VideoProperties> properties;
  void Queue(FrameOwner frame);
  void DateBackwards(std::int64_t time);
};

// Time stamps may be given for some pictures only; the others follow from the durations, those
// before the first stamp backwards.
void VideoDecoder::Parts::DateBackwards(std::int64_t time) {
  for (auto picture = pictures.rbegin(); undated > 0 && picture != pictures.rend(); ++picture) {
    time -= picture->duration;
    picture->time = time;
    --undated;
  }
}

void VideoDecoder::Parts::Queue(FrameOwner frame) {
  properties = ReadProperties(*context, *frame);
  DecodedPicture picture;
  picture.duration = DurationOf(*context, *frame);
  picture.intra = frame->pict_type == AV_PICTURE_TYPE_I;
  picture.interlaced = frame->interlaced_frame != 0;
  if (frame->pts != AV_NOPTS_VALUE) nextTime = frame->pts;
  if (nextTime) {
    DateBackwards(*nextTime);
    picture.time = *nextTime;
    *nextTime += picture.duration;
  } else {
    ++undated;
  }
  picture.picture = std::shared_ptr<AVFrame>(std::move(frame));
  pictures.push_back(std::move(picture));
}

VideoDecoder::VideoDecoder(std::int64_t startTime, LogSink log)
    : parts_(std::make_unique<Parts>(std::move(log))) {
  parts_->startTime = startTime;
  const AVCodec* const codec = avcodec_find_decoder(AV_CODEC_ID_MPEG2VIDEO);
  if (codec == nullptr) return;
  parts_->parser.reset(av_parser_init(AV_CODEC_ID_MPEG2VIDEO));
  parts_->context.reset(avcodec_alloc_context3(codec));
  if (!parts_->context) return;
  parts_->context->thread_count = 1;
  parts_->log.ListenTo(*parts_->context);
  parts_->context->max_pixels = kMostPixels;
  if (avcodec_open2(parts_->context.get(), codec, nullptr) < 0) parts_->context.reset();
}

VideoDecoder::~VideoDecoder() = default;

void VideoDecoder::OnlyIntra() {
  if (parts_->context) parts_->context->skip_frame = AVDISCARD_NONKEY;
}

void VideoDecoder::Feed(ByteSpan bytes, std::optional<std::int64_t> time) {
  if (!parts_->parser || !parts_->context) return;
  auto& input = parts_->input;
  input.assign(bytes.begin(), bytes.end());
  input.resize(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE);
  std::int64_t stamp = time.value_or(AV_NOPTS_VALUE);
  std::size_t position = 0;
  while (position < bytes.size()) {
    std::uint8_t* unit = nullptr;
    int unitSize = 0;
    const int used = av_parser_parse2(
        parts_->parser.get(), parts_->context.get(), &unit, &unitSize, input.data() + position,
        static_cast<int>(bytes.size() - position), stamp, AV_NOPTS_VALUE, 0);
    if (used < 0 || (used == 0 && unitSize == 0)) return;
    stamp = AV_NOPTS_VALUE;
    position += static_cast<std::size_t>(used);
    if (unitSize > 0) {
      Decode({unit, static_cast<std::size_t>(unitSize)}, parts_->parser->pts);
    }
  }
}

void VideoDecoder::Decode(ByteSpan accessUnit, std::int64_t time) {
  AVPacket& packet = *parts_->packet;
  // The library takes a non-const pointer and leaves the bytes alone.
  packet.data = const_cast<std::uint8_t*>(accessUnit.data());
  packet.size = static_cast<int>(accessUnit.size());
  packet.pts = time;
  // An error here is a damaged access unit; decoding goes on with the next.
  if (avcodec_send_packet(parts_->context.get(), &packet) == 0) Receive();
  packet.data = nullptr;
  packet.size = 0;
}

void VideoDecoder::Receive() {
  for (;;) {
    FrameOwner frame(av_frame_alloc());
    if (!frame || avcodec_receive_frame(parts_->context.get(), frame.get()) < 0) return;
    parts_->Queue(std::move(frame));
  }
}

void VideoDecoder::Finish() {
  if (!parts_->parser || !parts_->context) return;
  std::uint8_t* unit = nullptr;
  int unitSize = 0;
  av_parser_parse2(parts_->parser.get(), parts_->context.get(), &unit, &unitSize, nullptr, 0,
                   AV_NOPTS_VALUE, AV_NOPTS_VALUE, 0);
  if (unitSize > 0) Decode({unit, static_cast<std::size_t>(unitSize)}, parts_->parser->pts);
  if (avcodec_send_packet(parts_->context.get(), nullptr) == 0) Receive();
  std::int64_t time = parts_->startTime;
  for (auto picture = parts_->pictures.end() - static_cast<std::ptrdiff_t>(parts_->undated);
       picture != parts_->pictures.end(); ++picture) {
    picture->time = time;
    time += picture->duration;
  }
  parts_->undated = 0;
}

std::optional<DecodedPicture> VideoDecoder::Take() {
  if (parts_->pictures.size() == parts_->undated) return std::nullopt;
  DecodedPicture picture = std::move(parts_->pictures.front());
  parts_->pictures.pop_front();
  return picture;
}

const std::optional<VideoProperties>& VideoDecoder::Properties() const {
  return parts_->properties;
}

VideoFrame VideoDecoder::Convert(const DecodedPicture& decoded, bool still) {
  const AVFrame* source = static_cast<const AVFrame*>(decoded.picture.get());
  VideoFrame result;
  result.duration = decoded.duration;
  result.height = FullHeight(source->height);
  result.rgb.resize(static_cast<std::size_t>(result.width) *
                    static_cast<std::size_t>(result.height) * 3);
  const FrameOwner smooth = still && decoded.interlaced && source->format == AV_PIX_FMT_YUV420P
                                ? WithoutCombing(*source)
                                : nullptr;
  if (smooth) source = smooth.get();

  const int shownWidth = source->width == kCroppedWidth ? kCroppedWidth : result.width;
  parts_->scaler.reset(sws_getCachedContext(
      parts_->scaler.release(), source->width, source->height,
      static_cast<AVPixelFormat>(source->format), shownWidth, result.height, AV_PIX_FMT_RGB24,
      SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
  if (!parts_->scaler) return result;
  constexpr int kUnchanged = 1 << 16;
  sws_setColorspaceDetails(parts_->scaler.get(), sws_getCoefficients(SWS_CS_ITU601), 0,
                           sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, kUnchanged, kUnchanged);
  const auto margin = static_cast<std::size_t>((result.width - shownWidth) / 2);
  std::uint8_t* const first = result.rgb.data() + margin * 3;
  const std::array<std::uint8_t*, 1> target = {first};
  const std::array<int, 1> stride = {result.width * 3};
  sws_scale(parts_->scaler.get(), source->data, source->linesize, 0, source->height, target.data(),
            stride.data());
  return result;
}

}  // namespace quillomar
