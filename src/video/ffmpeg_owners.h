#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
}

// How smart pointers give back what FFmpeg's libraries hand out.
namespace quillomar {

struct CloseParser {
  void operator()(AVCodecParserContext* parser) const { av_parser_close(parser); }
};
struct FreeContext {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FreePacket {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeFrame {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

}  // namespace quillomar
