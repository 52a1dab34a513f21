#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "spu/subpicture_unit.h"

namespace quillomar::test {

// A subpicture as FFmpeg's demuxer and decoder read it.
struct FfmpegSubtitle {
  int streamId = 0;      // 0x20 to 0x3F
  std::int64_t pts = 0;  // 90 kHz, as stored
  bool hasEnd = false;
  int startMs = 0, endMs = 0;  // after the PTS
  bool forced = false;
  int x = 0, y = 0, width = 0, height = 0;  // cut to what is not transparent
  std::vector<std::uint8_t> types;          // pixel types of that box
  std::array<int, 4> colours{};             // CLUT index of each pixel type
  std::array<int, 4> alphas{};              // 0 to 15
};

// All subpictures of program stream files that follow each other: stream by stream, each in the
// order of the multiplex.
std::vector<FfmpegSubtitle> ReadWithFfmpeg(const std::vector<std::string>& paths);

// One unit by its bytes; its stream and time are 0. Without width where nothing is to be seen.
FfmpegSubtitle DecodeWithFfmpeg(std::span<const std::uint8_t> unit);

// The upper lines of the frame: a digit for the type of a pixel that can be seen, else a blank.
using Screen = std::vector<std::string>;
Screen ScreenOf(const FfmpegSubtitle& subtitle, int lines);
// What the program shows of a decoded unit in its selected control sequence.
Screen ScreenOf(const SubpictureUnit& unit, int lines);

}  // namespace quillomar::test
