#include "editor/picture.h"

namespace quillomar {
namespace {

constexpr int kOpaque = 15;
constexpr int kBytesPerPixel = 4;
// 15 steps of alpha spread over 0 to 255.
constexpr int kAlphaScale = 17;

using Pixel = std::array<std::uint8_t, kBytesPerPixel>;

std::array<Pixel, kPixelTypes> MakePixels(const DisplayPalette& palette,
                                          std::optional<int> onlyType) {
  std::array<Pixel, kPixelTypes> pixels{};
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    const Rgb colour = palette.colours[type];
    const bool hidden = onlyType && static_cast<int>(type) != *onlyType;
    const int alpha = hidden ? 0 : palette.alphas[type] * kAlphaScale;
    pixels[type] = {colour.r, colour.g, colour.b, static_cast<std::uint8_t>(alpha)};
  }
  return pixels;
}

Rgb FromSetting(std::int32_t colour) {
  const ColourBytes bytes = SplitColour(colour);
  return {bytes.red, bytes.green, bytes.blue};
}

std::array<Rgb, kPixelTypes> AutomaticColours(const Preferences& preferences) {
  return {FromSetting(preferences.autoBackgroundColour), FromSetting(preferences.autoPatternColour),
          FromSetting(preferences.autoEmphasis1Colour),
          FromSetting(preferences.autoEmphasis2Colour)};
}

}  // namespace

DisplayPalette MakeDisplayPalette(const SubpictureUnit& unit, const ClutRecord* clut,
                                  const Preferences& preferences) {
  DisplayPalette palette;
  const auto automatic = AutomaticColours(preferences);
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    palette.alphas[type] = unit.currentAlphas ? (*unit.currentAlphas)[type] : kOpaque;
    if (clut != nullptr && unit.currentColours) {
      const int entry = (*unit.currentColours)[type];
      palette.entries[type] = entry;
      palette.colours[type] = ToRgb(clut->entries.at(static_cast<std::size_t>(entry)));
    } else {
      palette.colours[type] = automatic[type];
    }
  }
  return palette;
}

SubpicturePicture ComposePicture(const SubpictureUnit& unit, const DisplayPalette& palette,
                                 std::optional<int> onlyType) {
  SubpicturePicture picture{
      unit.state.area.sx, unit.state.area.sy, unit.state.width, unit.state.height, {}};
  const auto pixels = MakePixels(palette, onlyType);
  picture.rgba.reserve(unit.pixels.size() * kBytesPerPixel);
  for (const std::uint8_t type : unit.pixels) {
    const Pixel& pixel = pixels.at(type);
    picture.rgba.insert(picture.rgba.end(), pixel.begin(), pixel.end());
  }
  return picture;
}

}  // namespace quillomar
