// FFmpeg's messages.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/log.h>
}

#include <array>
#include <cstdio>

#include "base/format.h"
#include "video/decoder_log.h"

namespace quillomar {
namespace {

constexpr int kMostLines = 10;
constexpr std::size_t kLongestLine = 200;

// The decoder that speaks tells its log; some messages come without one.
void TakeMessage(void* speaker, int level, const char* format, va_list arguments) {
  if (speaker == nullptr || level > AV_LOG_ERROR) return;
  if (*static_cast<const AVClass* const*>(speaker) != avcodec_get_class()) return;
  void* const log = static_cast<const AVCodecContext*>(speaker)->opaque;
  if (log == nullptr) return;
  std::array<char, kLongestLine> text{};
  std::vsnprintf(text.data(), text.size(), format, arguments);
  static_cast<DecoderLog*>(log)->Say(text.data());
}

}  // namespace

void DecoderLog::ListenTo(AVCodecContext& context) {
  // For the whole process, so once is enough, and decoders begin on several threads.
  [[maybe_unused]] static const bool installed = (av_log_set_callback(TakeMessage), true);
  context.opaque = this;
}

void DecoderLog::Say(const std::string& text) {
  if (!sink_ || ++said_ > kMostLines) return;
  sink_(Format("%s: %s", name_, text.c_str()));
}

}  // namespace quillomar
