#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "base/file.h"

namespace quillomar::test {

struct ContextDeleter {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct PacketDeleter {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

// CLUT entry i as FFmpeg shall show it.
inline std::uint32_t PaletteEntry(std::uint32_t i) {
  return i * 0x100F01U;
}

// One subtitle as FFmpeg's decoder gives it; freed with its content.
class FfmpegSubtitle {
 public:
  explicit FfmpegSubtitle(const Bytes& unit) {
    const std::unique_ptr<AVCodecContext, ContextDeleter> decoder(avcodec_alloc_context3(nullptr));
    std::string palette;
    for (std::uint32_t i = 0; i < 16; ++i) {
      char entry[16];
      std::snprintf(entry, sizeof entry, "%06x,", PaletteEntry(i));
      palette += entry;
    }
    AVDictionary* options = nullptr;
    av_dict_set(&options, "palette", palette.c_str(), 0);
    const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_DVD_SUBTITLE);
    const int opened = avcodec_open2(decoder.get(), codec, &options);
    av_dict_free(&options);
    const std::unique_ptr<AVPacket, PacketDeleter> packet(av_packet_alloc());
    if (opened < 0 || av_new_packet(packet.get(), static_cast<int>(unit.size())) < 0) return;
    std::copy(unit.begin(), unit.end(), packet->data);
    int got = 0;
    avcodec_decode_subtitle2(decoder.get(), &subtitle_, &got, packet.get());
    decoded_ = got != 0;
  }
  ~FfmpegSubtitle() { avsubtitle_free(&subtitle_); }
  FfmpegSubtitle(const FfmpegSubtitle&) = delete;
  FfmpegSubtitle& operator=(const FfmpegSubtitle&) = delete;

  [[nodiscard]] bool Decoded() const { return decoded_; }
  // Null when nothing would be seen.
  [[nodiscard]] const AVSubtitleRect* Rect() const {
    return subtitle_.num_rects > 0 ? subtitle_.rects[0] : nullptr;
  }
  [[nodiscard]] int StartMs() const { return static_cast<int>(subtitle_.start_display_time); }
  [[nodiscard]] int EndMs() const { return static_cast<int>(subtitle_.end_display_time); }

 private:
  AVSubtitle subtitle_{};
  bool decoded_ = false;
};

}  // namespace quillomar::test
