#include "dvd/clut.h"

#include <algorithm>

namespace quillomar {
namespace {

// Cuts to a byte toward zero; the formulas bring the half that rounds.
std::uint8_t Truncated(double value) {
  return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
}

}  // namespace

Rgb ToRgb(YCrCb colour) {
  const double luma = 1.164 * (colour.y - 16);
  const double cr = colour.cr - 128;
  const double cb = colour.cb - 128;
  return {Truncated(luma + 1.596 * cr + 0.5), Truncated(luma - 0.392 * cb - 0.813 * cr + 0.5),
          Truncated(luma + 2.017 * cb + 0.5)};
}

YCrCb ToYCrCb(Rgb colour) {
  const double r = colour.r;
  const double g = colour.g;
  const double b = colour.b;
  return {Truncated(0.257 * r + 0.504 * g + 0.098 * b + 16.5),
          Truncated(0.439 * r - 0.368 * g - 0.071 * b + 128.5),
          Truncated(-0.148 * r - 0.291 * g + 0.439 * b + 128.5)};
}

RgbClut ToRgb(const YCrCbClut& clut) {
  RgbClut rgb;
  std::transform(clut.begin(), clut.end(), rgb.begin(), [](YCrCb entry) { return ToRgb(entry); });
  return rgb;
}

}  // namespace quillomar
