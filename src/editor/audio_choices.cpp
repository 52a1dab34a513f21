#include "editor/audio_choices.h"

#include "video/audio_decoder.h"
#include "video/playback_options.h"

namespace quillomar {
namespace {

constexpr int kFirstAc3 = 0x80;
constexpr int kFirstLpcm = 0xA0;

bool CanPlay(const AudioStreamInfo& stream) {
  return stream.coding == "AC3" || stream.coding == "LPCM";
}

}  // namespace

std::vector<AudioChoice> AudioChoicesOf(const CellEntry* cell) {
  if (cell == nullptr) return {{"AC3", kFirstAc3}, {"LPCM", kFirstLpcm}};
  std::vector<AudioChoice> choices;
  for (const auto& stream : cell->audio) {
    if (!stream) continue;
    choices.push_back({AudioLabel(*stream), CanPlay(*stream) ? stream->streamId : kNoAudio});
  }
  return choices;
}

}  // namespace quillomar
