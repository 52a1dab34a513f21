#include <algorithm>
#include <array>

#include "dvd/big_endian.h"
#include "dvd/ifo_file.h"
#include "dvd/ifo_layout.h"
#include "dvd/pack.h"

namespace quillomar {
namespace {

constexpr int kAudioControls = 8;

// Display modes in which a stream control of a program chain names the stream. Pan-scan stands in
// the lowest byte, 4:3 in the highest.
std::uint8_t ModesOf(std::uint32_t control, std::uint32_t stream) {
  constexpr std::array<DisplayMode, 4> kModes = {kModePanScan, kModeLetterbox, kModeWide, kMode4x3};
  std::uint8_t modes = 0;
  for (const DisplayMode mode : kModes) {
    if ((control & 0x1F) == stream) modes = static_cast<std::uint8_t>(modes | mode);
    control >>= 8;
  }
  return modes;
}

// Display modes that video with these attributes can be shown in.
std::uint8_t PermittedModes(std::uint8_t videoAttributes) {
  const int aspect = videoAttributes >> kAspectShift & 3;
  if (aspect == 0) return kMode4x3;
  if (aspect != 3) return 0;
  return static_cast<std::uint8_t>(~(videoAttributes & kDisplayModeMask) * 4 + 2);
}

struct Coding {
  const char* name;
  int firstId;
};

// By the three bits of the audio attributes.
constexpr std::array<Coding, 8> kCodings = {{{"AC3", 0x80},
                                             {"?", 0},
                                             {"Mpeg1", 0x80},
                                             {"Mpeg2", 0xC0},
                                             {"LPCM", 0xA0},
                                             {"?", 0},
                                             {"DTS", 0x88},
                                             {"?", 0}}};

}  // namespace

std::uint8_t IfoFile::VideoAttributes(bool menu) const {
  return GetByte(Contents(), menu || isManager_ ? kMenuVideoOffset : kTitleVideoOffset);
}

std::string IfoFile::Language(std::size_t position) const {
  std::string language;
  for (std::size_t i = 0; i < 2; ++i) {
    const std::uint8_t letter = GetByte(Contents(), position + i);
    language += letter == 0 ? ' ' : static_cast<char>(letter);
  }
  return language;
}

std::string IfoFile::SubpictureLanguage(bool menu, int logical) const {
  if (isManager_ && !menu) return "  ";
  const std::size_t count = menu ? kMenuSubpictureCountOffset : kTitleSubpictureCountOffset;
  const std::size_t first = menu ? kMenuSubpictureOffset : kTitleSubpictureOffset;
  const int listed = quillomar::GetShort(Contents(), count);
  if (logical >= (menu ? std::min(listed, 1) : listed)) return "  ";
  return Language(first + static_cast<std::size_t>(logical) * kSubpictureAttributesSize +
                  kSubpictureLanguageOffset);
}

SubpictureStreamInfo IfoFile::SubpictureStream(int languageUnit, int number, int subStreamId) {
  SubpictureStreamInfo info;
  const auto chain = ProgramChain(languageUnit, number);
  if (!chain || subStreamId < kFirstSubpictureId) return info;
  const auto stream = static_cast<std::uint32_t>(subStreamId - kFirstSubpictureId);
  const bool menu = languageUnit > 0;
  for (int logical = 0; logical < kSubpictureStreams && !info.found; ++logical) {
    const std::uint32_t control = quillomar::GetInt(
        Contents(), *chain + kPgcSubpictureOffset + static_cast<std::size_t>(logical) * 4);
    if ((control & kPgcSubpictureAvailable) == 0) continue;
    info.modes = ModesOf(control, stream);
    info.found = info.modes != 0;
    if (info.found) info.language = SubpictureLanguage(menu, logical);
  }
  info.modes = static_cast<std::uint8_t>(info.modes & PermittedModes(VideoAttributes(menu)));
  return info;
}

std::optional<AudioStreamInfo> IfoFile::AudioStream(int languageUnit, int number, int logical) {
  const auto chain = ProgramChain(languageUnit, number);
  if (!chain || isManager_ || logical < 0 || logical >= kAudioControls) return std::nullopt;
  const auto index = static_cast<std::size_t>(logical);
  const std::uint16_t control =
      quillomar::GetShort(Contents(), *chain + kPgcAudioOffset + index * 2);
  if ((control & kPgcAudioAvailable) == 0) return std::nullopt;
  const std::size_t attributes =
      (languageUnit > 0 ? kMenuAudioOffset : kTitleAudioOffset) + index * kAudioAttributesSize;
  const Coding& coding = kCodings.at(GetByte(Contents(), attributes + kAudioCodingOffset) >> 5);
  AudioStreamInfo info;
  info.coding = coding.name;
  info.language = Language(attributes + kAudioLanguageOffset);
  info.channels = (GetByte(Contents(), attributes + kAudioChannelsOffset) & 7) + 1;
  info.streamId = coding.firstId + (control >> 8 & 7);
  return info;
}

}  // namespace quillomar
