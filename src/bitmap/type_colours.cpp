#include "bitmap/type_colours.h"

#include <algorithm>
#include <cstdlib>

namespace quillomar {
namespace {

constexpr int kMiddle = 128;
// Plain to the eye; three steps from either half of the scale stay on the scale.
constexpr int kNudge = 40;

std::uint8_t Nudged(std::uint8_t channel, int steps) {
  const int way = channel < kMiddle ? steps * kNudge : -steps * kNudge;
  return static_cast<std::uint8_t>(channel + way);
}

int Distance(Rgb a, Rgb b) {
  return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
}

}  // namespace

std::optional<TypeColours> ClutColours(const SubpictureUnit& unit, const ClutRecord* clut) {
  if (clut == nullptr || !unit.currentColours) return std::nullopt;
  TypeColours colours;
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    colours[type] = ToRgb(clut->entries.at((*unit.currentColours)[type]));
  }
  return colours;
}

TypeColours AutomaticColours(const TypeColours& defaults) {
  TypeColours colours = defaults;
  for (auto colour = colours.begin(); colour != colours.end(); ++colour) {
    const Rgb wanted = *colour;
    for (int steps = 1; std::find(colours.begin(), colour, *colour) != colour; ++steps) {
      *colour = {Nudged(wanted.r, steps), Nudged(wanted.g, steps), Nudged(wanted.b, steps)};
    }
  }
  return colours;
}

std::vector<int> TypesOfEqualColour(const TypeColours& colours) {
  std::vector<int> types;
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    if (std::count(colours.begin(), colours.end(), colours[type]) == 1) continue;
    types.push_back(static_cast<int>(type));
  }
  return types;
}

ExchangeColours ColoursForExchange(const SubpictureUnit& unit, const ClutRecord* clut,
                                   const TypeColours& automaticDefaults, PaletteChoice choice) {
  const auto fromClut =
      choice == PaletteChoice::kIfo ? ClutColours(unit, clut) : std::optional<TypeColours>();
  if (fromClut && TypesOfEqualColour(*fromClut).empty()) return {*fromClut, false};
  return {AutomaticColours(automaticDefaults), fromClut.has_value()};
}

std::uint8_t NearestType(const TypeColours& colours, Rgb colour) {
  const auto nearest = std::min_element(colours.begin(), colours.end(), [colour](Rgb a, Rgb b) {
    return Distance(a, colour) < Distance(b, colour);
  });
  return static_cast<std::uint8_t>(nearest - colours.begin());
}

}  // namespace quillomar
