#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "dvd/sector.h"
#include "dvd/video_standard.h"

// What a video pack tells without being decoded: headers of the MPEG video elementary stream, each
// introduced by a 32-bit start code. Only headers that lie whole in the one sector are seen.
namespace quillomar {

inline constexpr std::uint32_t kPictureStart = 0x00000100;
inline constexpr std::uint32_t kUserDataStart = 0x000001B2;
inline constexpr std::uint32_t kSequenceStart = 0x000001B3;
inline constexpr std::uint32_t kExtensionStart = 0x000001B5;
inline constexpr std::size_t kStartCodeSize = 4;

// User data that begins with these four bytes carries the lines of closed captions.
inline constexpr std::uint32_t kClosedCaptionMark = 0x434301F8;

// Sequence header: width (12 bits), height (12 bits), aspect ratio and frame rate codes (4 bits
// each).
struct SequenceHeader {
  int width = 0;   // pixels
  int height = 0;  // lines
  int aspect = 0;  // 2: 4:3, 3: 16:9
  int rate = 0;    // see FrameRateOf
};
[[nodiscard]] std::optional<SequenceHeader> FindSequenceHeader(SectorView videoPack);

// NTSC for 480 and 240 lines, else PAL.
[[nodiscard]] VideoStandard StandardOf(const SequenceHeader& header);

// Frames a second that a frame rate code stands for; 0 for one that stands for none.
[[nodiscard]] double FrameRateOf(int code);
// Whether the video is MPEG-2, which has an extension in the pack where an I-picture begins;
// nothing when the first picture that begins in this pack is none.
[[nodiscard]] std::optional<bool> FindMpeg2(SectorView videoPack);

[[nodiscard]] bool HasClosedCaptions(SectorView videoPack);

}  // namespace quillomar
