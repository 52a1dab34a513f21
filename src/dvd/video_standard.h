#pragma once

namespace quillomar {

// Television standard of a disc; decides frame height, frame duration and how ticks become seconds.
enum class VideoStandard { kUnknown = 0, kPal = 1, kNtsc = 2 };

inline constexpr int kPictureWidth = 720;

// Until the standard is known, a disc counts as NTSC.
inline bool IsPal(VideoStandard standard) {
  return standard == VideoStandard::kPal;
}

// Lines of a frame: 576 or 480.
inline int FrameHeight(VideoStandard standard) {
  return IsPal(standard) ? 576 : 480;
}

// Duration of one frame in ticks of 90 kHz.
inline int FrameTicks(VideoStandard standard) {
  return IsPal(standard) ? 3600 : 3003;
}

// Duration of one frame in ms, for control-sequence delays.
inline double FrameMs(VideoStandard standard) {
  return IsPal(standard) ? 40.0 : 33.366665;
}

// The same in whole ms, as limits of delays are counted: 40 or 33.
inline int WholeFrameMs(VideoStandard standard) {
  return static_cast<int>(FrameMs(standard));
}

// Ticks that count as one second wherever a time is shown, written or retimed. NTSC times are
// stretched by 1.001 on purpose.
inline int TicksPerSecond(VideoStandard standard) {
  return IsPal(standard) ? 90000 : 90090;
}

}  // namespace quillomar
