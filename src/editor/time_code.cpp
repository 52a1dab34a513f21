#include "editor/time_code.h"

#include <algorithm>

#include "base/format.h"

namespace quillomar {
namespace {

constexpr int kSecondsPerHour = 3600;
constexpr int kSecondsPerMinute = 60;
constexpr double kLongestSeconds = 1.0e9;

std::string FormatTime(double seconds) {
  // A damaged disc can claim more than a number of seconds holds.
  seconds = std::clamp(seconds, -kLongestSeconds, kLongestSeconds);
  const int whole = static_cast<int>(seconds);
  const int milliseconds = static_cast<int>((seconds - whole) * 1000);
  return Format("%02d:%02d:%02d,%03d", whole / kSecondsPerHour,
                whole % kSecondsPerHour / kSecondsPerMinute, whole % kSecondsPerMinute,
                milliseconds);
}

}  // namespace

std::string FormatSrtTimeLine(std::int64_t startPts, int durationMs, VideoStandard standard) {
  const double start = static_cast<double>(startPts) / TicksPerSecond(standard);
  if (durationMs < 0) return FormatTime(start) + " --> ?";
  // The end is a single-precision number; its rounding shows in the last digit and is part of the
  // format.
  const auto end = static_cast<float>(durationMs * 0.001 + start);
  return FormatTime(start) + " --> " + FormatTime(static_cast<double>(end));
}

std::int64_t TicksToMs(std::int64_t ticks, VideoStandard standard) {
  return ticks * 1000 / TicksPerSecond(standard);
}

}  // namespace quillomar
