#include "editor/screen_mode.h"

#include <array>

namespace quillomar {
namespace {

constexpr double kNarrowScreen = 4.0 / 3.0;
constexpr double kWideScreen = 16.0 / 9.0;
// A wide picture between the bars of a narrow screen, and what a narrow screen cuts out of it.
constexpr double kShownPart = kNarrowScreen / kWideScreen;
constexpr double kBar = (1.0 - kShownPart) / 2;

bool Has(std::uint8_t modes, ScreenMode mode) {
  return (modes >> static_cast<unsigned>(mode) & 1U) != 0;
}

}  // namespace

double ScreenAspect(ScreenMode mode) {
  return mode == ScreenMode::kWide ? kWideScreen : kNarrowScreen;
}

VideoPlace PlaceOfVideo(ScreenMode mode) {
  if (mode == ScreenMode::kLetterbox) return {kBar, kShownPart, 0.0, 1.0};
  if (mode == ScreenMode::kPanScan) return {0.0, 1.0, kBar, kShownPart};
  return {};
}

ScreenMode FittingMode(ScreenMode present, std::uint8_t streamModes) {
  if (present != ScreenMode::k4x3 && Has(streamModes, present)) return present;
  constexpr std::array kWideModes = {ScreenMode::kWide, ScreenMode::kLetterbox,
                                     ScreenMode::kPanScan};
  for (const ScreenMode mode : kWideModes) {
    if (Has(streamModes, mode)) return mode;
  }
  return present;
}

}  // namespace quillomar
