extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <array>
#include <functional>

#include "video/linear_decode.h"

namespace quillomar::test {
namespace {

Bytes ToRgb(const AVFrame& frame) {
  SwsContext* const scaler = sws_getContext(
      frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width,
      frame.height, AV_PIX_FMT_RGB24, SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr,
      nullptr, nullptr);
  Bytes rgb(static_cast<std::size_t>(frame.width * frame.height * 3));
  const std::array<std::uint8_t*, 1> target = {rgb.data()};
  const std::array<int, 1> stride = {frame.width * 3};
  sws_scale(scaler, frame.data, frame.linesize, 0, frame.height, target.data(), stride.data());
  sws_freeContext(scaler);
  return rgb;
}

// The one video stream of a file, picture by picture until `take` has enough.
void DecodeFile(const std::string& path, const std::function<bool(const AVFrame&)>& take) {
  AVFormatContext* file = nullptr;
  if (avformat_open_input(&file, path.c_str(), nullptr, nullptr) < 0) return;
  avformat_find_stream_info(file, nullptr);
  const AVCodec* codec = nullptr;
  const int stream = av_find_best_stream(file, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
  AVCodecContext* context = avcodec_alloc_context3(codec);
  avcodec_parameters_to_context(context, file->streams[stream]->codecpar);
  avcodec_open2(context, codec, nullptr);
  AVPacket* packet = av_packet_alloc();
  AVFrame* frame = av_frame_alloc();
  bool more = true;
  while (more && av_read_frame(file, packet) >= 0) {
    if (packet->stream_index == stream && avcodec_send_packet(context, packet) == 0) {
      while (more && avcodec_receive_frame(context, frame) >= 0) more = take(*frame);
    }
    av_packet_unref(packet);
  }
  av_frame_free(&frame);
  av_packet_free(&packet);
  avcodec_free_context(&context);
  avformat_close_input(&file);
}

}  // namespace

std::vector<Bytes> DecodeLinearly(const std::string& path, std::vector<std::uint32_t> times) {
  std::vector<Bytes> pictures(times.size());
  std::size_t next = 0;
  Bytes shown;
  DecodeFile(path, [&](const AVFrame& frame) {
    const std::int64_t pts = frame.best_effort_timestamp;
    while (next < times.size() && std::int64_t{times[next]} < pts) pictures[next++] = shown;
    shown = ToRgb(frame);
    return next < times.size();
  });
  return pictures;
}

}  // namespace quillomar::test
