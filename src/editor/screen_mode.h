#pragma once

#include <cstdint>

namespace quillomar {

// How a television shows the video. The values are the bits of a stream's display modes.
enum class ScreenMode {
  k4x3 = 0,        // 4:3 video
  kWide = 1,       // 16:9 video on a wide screen
  kLetterbox = 2,  // 16:9 video on a 4:3 screen, between black bars
  kPanScan = 3,    // 16:9 video on a 4:3 screen, its sides cut off
};

// Width of the screen to its height.
[[nodiscard]] double ScreenAspect(ScreenMode mode);

// Where the video stands on the screen, and what of it is shown: parts of their heights and widths.
// Subpictures always fill the screen.
struct VideoPlace {
  double top = 0.0, height = 1.0;  // on the screen
  double left = 0.0, width = 1.0;  // of the video
};
[[nodiscard]] VideoPlace PlaceOfVideo(ScreenMode mode);

// The mode for a subpicture of a stream that is made for the modes in `streamModes`: the present
// one where the stream has it, else the first of wide, letterbox, and pan and scan.
[[nodiscard]] ScreenMode FittingMode(ScreenMode present, std::uint8_t streamModes);

}  // namespace quillomar
