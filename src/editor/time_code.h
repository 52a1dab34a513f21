#pragma once

#include <cstdint>
#include <string>

#include "dvd/video_standard.h"

namespace quillomar {

// "hh:mm:ss,mmm --> hh:mm:ss,mmm" of a start in ticks of 90 kHz and a duration in ms; "... --> ?"
// for a negative duration (no end). Milliseconds are truncated.
[[nodiscard]] std::string FormatSrtTimeLine(std::int64_t startPts, int durationMs,
                                            VideoStandard standard);

// Ticks as whole milliseconds, truncated.
[[nodiscard]] std::int64_t TicksToMs(std::int64_t ticks, VideoStandard standard);

}  // namespace quillomar
