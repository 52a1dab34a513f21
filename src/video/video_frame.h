#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "dvd/video_standard.h"

namespace quillomar {

// A picture of the disc's video, scaled to the whole frame of its standard.
struct VideoFrame {
  int width = kPictureWidth;      // pixels
  int height = 0;                 // lines: 480 or 576
  std::vector<std::uint8_t> rgb;  // 3 bytes a pixel, row 0 on top
  std::uint32_t pts = 0;          // low 32 bits of its time stamp, 90 kHz
  std::int64_t globalTime = 0;    // ticks from the start of the set
  std::int64_t duration = 0;      // ticks
  std::uint32_t navLba = 0;       // LBA in set of its VOBU's nav pack
};
using FramePointer = std::shared_ptr<const VideoFrame>;

// What the video stream tells of itself.
struct VideoProperties {
  int width = 0;   // coded pixels
  int height = 0;  // coded lines
  double displayAspect = 4.0 / 3.0;
  double frameRate = 0;  // frames a second
  bool mpeg1 = false;
};

enum class FrameChoice {
  kShown,         // the picture on the screen at the time
  kNearestIntra,  // the I-picture that begins nearest to the time
};

// Asks for a picture. The time counts in the clock of the VOBU in which the sector lies, and the
// picture may belong to another VOBU.
struct FrameRequest {
  std::uint32_t lba = 0;             // LBA in set, a nav pack or any later sector of its VOBU
  std::optional<std::uint32_t> pts;  // 90 kHz; nothing: the VOBU's first picture
  std::int64_t timeOffset = 0;       // from that clock to the time in the set, ticks
  FrameChoice choice = FrameChoice::kShown;
  friend auto operator<=>(const FrameRequest&, const FrameRequest&) = default;
};

}  // namespace quillomar
