#include "editor/picture.h"

#include "bitmap/shown_bitmap.h"

namespace quillomar {
namespace {

constexpr int kOpaque = 15;
// 15 steps of alpha spread over 0 to 255.
constexpr int kAlphaScale = 17;

Rgb FromSetting(std::int32_t colour) {
  const ColourBytes bytes = SplitColour(colour);
  return {bytes.red, bytes.green, bytes.blue};
}

}  // namespace

std::array<RgbaPixel, kPixelTypes> MakePixels(const DisplayPalette& palette,
                                              std::optional<int> onlyType) {
  std::array<RgbaPixel, kPixelTypes> pixels{};
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    const Rgb colour = palette.colours[type];
    const bool hidden = onlyType && static_cast<int>(type) != *onlyType;
    const int alpha = hidden ? 0 : palette.alphas[type] * kAlphaScale;
    pixels[type] = {colour.r, colour.g, colour.b, static_cast<std::uint8_t>(alpha)};
  }
  return pixels;
}

void IgnoreTransparency(const SubpictureUnit& unit, DisplayPalette& palette) {
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    if (static_cast<int>(type) != unit.state.statistics.backgroundType) {
      palette.alphas[type] = kOpaque;
    }
  }
}

TypeColours AutomaticDefaults(const Preferences& preferences) {
  return {FromSetting(preferences.autoBackgroundColour), FromSetting(preferences.autoPatternColour),
          FromSetting(preferences.autoEmphasis1Colour),
          FromSetting(preferences.autoEmphasis2Colour)};
}

DisplayPalette MakeDisplayPalette(const SubpictureUnit& unit, const ClutRecord* clut,
                                  const Preferences& preferences) {
  DisplayPalette palette;
  const auto clutColours = ClutColours(unit, clut);
  palette.colours = clutColours ? *clutColours : AutomaticColours(AutomaticDefaults(preferences));
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    palette.alphas[type] = unit.currentAlphas ? (*unit.currentAlphas)[type] : kOpaque;
    if (clutColours) palette.entries[type] = (*unit.currentColours)[type];
  }
  return palette;
}

SubpicturePicture ComposePicture(const SubpictureUnit& unit, const DisplayPalette& palette,
                                 std::optional<int> onlyType) {
  const ShownBitmap shown = FindShownBitmap(unit);
  SubpicturePicture picture{shown.x, shown.y, shown.width, shown.height, {}};
  const auto pixels = MakePixels(palette, onlyType);
  picture.rgba.reserve(shown.pixels.size() * sizeof(RgbaPixel));
  for (const std::uint8_t type : shown.pixels) {
    const RgbaPixel& pixel = pixels.at(type);
    picture.rgba.insert(picture.rgba.end(), pixel.begin(), pixel.end());
  }
  return picture;
}

}  // namespace quillomar
