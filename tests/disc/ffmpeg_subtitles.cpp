#include "disc/ffmpeg_subtitles.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>

#include "spu/position.h"

namespace quillomar::test {
namespace {

// A palette in which the red byte is the entry's index, so that a colour tells its CLUT index.
std::string IndexPalette() {
  std::string palette;
  for (int i = 0; i < 16; ++i) {
    std::array<char, 16> entry{};
    std::snprintf(entry.data(), entry.size(), "%s%02x0000", i == 0 ? "" : ", ", i);
    palette += entry.data();
  }
  return palette;
}

// The files one behind the other, as one input.
class JoinedInput {
 public:
  explicit JoinedInput(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) files_.push_back(std::fopen(path.c_str(), "rb"));
    constexpr int kBufferSize = 1 << 16;
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kBufferSize));
    io = avio_alloc_context(buffer, kBufferSize, 0, this, &Read, nullptr, nullptr);
  }
  ~JoinedInput() {
    av_freep(&io->buffer);
    avio_context_free(&io);
    for (std::FILE* const file : files_) std::fclose(file);
  }
  JoinedInput(const JoinedInput&) = delete;
  JoinedInput& operator=(const JoinedInput&) = delete;

  AVIOContext* io = nullptr;

 private:
  static int Read(void* self, std::uint8_t* out, int size) {
    auto& input = *static_cast<JoinedInput*>(self);
    while (input.current_ < input.files_.size()) {
      const std::size_t count =
          std::fread(out, 1, static_cast<std::size_t>(size), input.files_[input.current_]);
      if (count > 0) return static_cast<int>(count);
      ++input.current_;
    }
    return AVERROR_EOF;
  }

  std::vector<std::FILE*> files_;
  std::size_t current_ = 0;
};

struct CodecDeleter {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
using CodecPointer = std::unique_ptr<AVCodecContext, CodecDeleter>;

CodecPointer OpenDecoder() {
  const AVCodec* const codec = avcodec_find_decoder(AV_CODEC_ID_DVD_SUBTITLE);
  CodecPointer context(avcodec_alloc_context3(codec));
  av_opt_set(context->priv_data, "palette", IndexPalette().c_str(), 0);
  if (avcodec_open2(context.get(), codec, nullptr) < 0) throw std::runtime_error("no decoder");
  return context;
}

FfmpegSubtitle Convert(const AVSubtitle& subtitle, const AVPacket& packet, int streamId) {
  FfmpegSubtitle result;
  result.streamId = streamId;
  result.pts = packet.pts;
  result.startMs = static_cast<int>(subtitle.start_display_time);
  result.hasEnd = subtitle.end_display_time != UINT32_MAX && subtitle.end_display_time != 0;
  result.endMs = static_cast<int>(subtitle.end_display_time);
  if (subtitle.num_rects == 0) return result;
  const AVSubtitleRect& rect = *subtitle.rects[0];
  result.forced = (rect.flags & AV_SUBTITLE_FLAG_FORCED) != 0;
  result.x = rect.x;
  result.y = rect.y;
  result.width = rect.w;
  result.height = rect.h;
  for (int row = 0; row < rect.h; ++row) {
    const std::uint8_t* const start =
        rect.data[0] + static_cast<std::ptrdiff_t>(row) * rect.linesize[0];
    result.types.insert(result.types.end(), start, start + rect.w);
  }
  const auto* const palette = reinterpret_cast<const std::uint32_t*>(rect.data[1]);
  for (std::size_t type = 0; type < 4; ++type) {
    result.colours[type] = static_cast<int>(palette[type] >> 16 & 0xFF);
    result.alphas[type] = static_cast<int>(palette[type] >> 24) / 17;
  }
  return result;
}

template <typename Alphas>
Screen Draw(int x, int y, int width, std::span<const std::uint8_t> types, const Alphas& alphas,
            int lines) {
  Screen screen(static_cast<std::size_t>(lines), std::string(kPictureWidth, ' '));
  for (int i = 0; i < std::ssize(types); ++i) {
    const std::uint8_t type = types[static_cast<std::size_t>(i)];
    const int line = y + i / width;
    if (line >= lines || alphas.at(type) == 0) continue;
    screen[static_cast<std::size_t>(line)].at(static_cast<std::size_t>(x + i % width)) =
        static_cast<char>('0' + type);
  }
  return screen;
}

}  // namespace

Screen ScreenOf(const FfmpegSubtitle& subtitle, int lines) {
  return Draw(subtitle.x, subtitle.y, subtitle.width, subtitle.types, subtitle.alphas, lines);
}

Screen ScreenOf(const SubpictureUnit& unit, int lines) {
  const SpuState& state = unit.state;
  return Draw(state.area.sx, state.area.sy, state.width, ShownPixels(unit),
              unit.currentAlphas.value_or(PixelTypeValues{}), lines);
}

std::vector<FfmpegSubtitle> ReadWithFfmpeg(const std::vector<std::string>& paths) {
  JoinedInput input(paths);
  AVFormatContext* format = avformat_alloc_context();
  format->pb = input.io;
  format->correct_ts_overflow = 0;
  if (avformat_open_input(&format, nullptr, av_find_input_format("mpeg"), nullptr) < 0) {
    throw std::runtime_error("FFmpeg cannot open the VOB");
  }
  std::vector<FfmpegSubtitle> subtitles;
  std::map<int, CodecPointer> decoders;
  AVPacket* packet = av_packet_alloc();
  while (av_read_frame(format, packet) >= 0) {
    const AVStream& stream = *format->streams[packet->stream_index];
    if (stream.codecpar->codec_id == AV_CODEC_ID_DVD_SUBTITLE) {
      CodecPointer& decoder = decoders[packet->stream_index];
      if (!decoder) decoder = OpenDecoder();
      AVSubtitle subtitle{};
      int got = 0;
      avcodec_decode_subtitle2(decoder.get(), &subtitle, &got, packet);
      if (got != 0) subtitles.push_back(Convert(subtitle, *packet, stream.id & 0xFF));
      avsubtitle_free(&subtitle);
    }
    av_packet_unref(packet);
  }
  av_packet_free(&packet);
  avformat_close_input(&format);
  std::stable_sort(
      subtitles.begin(), subtitles.end(),
      [](const FfmpegSubtitle& a, const FfmpegSubtitle& b) { return a.streamId < b.streamId; });
  return subtitles;
}

FfmpegSubtitle DecodeWithFfmpeg(std::span<const std::uint8_t> unit) {
  const CodecPointer decoder = OpenDecoder();
  AVPacket* packet = av_packet_alloc();
  av_new_packet(packet, static_cast<int>(unit.size()));
  std::copy(unit.begin(), unit.end(), packet->data);
  packet->pts = 0;
  AVSubtitle subtitle{};
  int got = 0;
  avcodec_decode_subtitle2(decoder.get(), &subtitle, &got, packet);
  FfmpegSubtitle result = got != 0 ? Convert(subtitle, *packet, 0) : FfmpegSubtitle();
  avsubtitle_free(&subtitle);
  av_packet_free(&packet);
  return result;
}

}  // namespace quillomar::test
