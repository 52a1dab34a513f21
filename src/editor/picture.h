#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "bitmap/type_colours.h"
#include "dvd/clut.h"
#include "editor/session.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// What the four pixel types look like in the current sequence.
struct DisplayPalette {
  TypeColours colours{};
  std::array<int, kPixelTypes> alphas{};  // 0 to 15
  std::array<std::optional<int>, kPixelTypes>
      entries{};  // CLUT indices; nothing for automatic colours
};

// The automatic colours as the preferences have them.
[[nodiscard]] TypeColours AutomaticDefaults(const Preferences& preferences);

// One pixel of a picture: red, green, blue, alpha.
using RgbaPixel = std::array<std::uint8_t, 4>;

// The four types as pixels; with `onlyType`, the others are invisible.
[[nodiscard]] std::array<RgbaPixel, kPixelTypes> MakePixels(const DisplayPalette& palette,
                                                            std::optional<int> onlyType);

// All types but the background become opaque. The unit's bitmap must be decoded.
void IgnoreTransparency(const SubpictureUnit& unit, DisplayPalette& palette);

// Colours come from the CLUT through the unit's set-colour command; without either they are the
// automatic ones of the preferences. A unit without a set-contrast command shows all types opaque.
[[nodiscard]] DisplayPalette MakeDisplayPalette(const SubpictureUnit& unit, const ClutRecord* clut,
                                                const Preferences& preferences);

// A subpicture as pixels to be laid over the frame.
struct SubpicturePicture {
  int x = 0, y = 0;  // place on the frame: pixels, lines
  int width = 0, height = 0;
  std::vector<std::uint8_t> rgba;  // 4 bytes a pixel, not premultiplied, row 0 on top
};

// Shows only one pixel type when `onlyType` is set. The unit's bitmap must be decoded.
[[nodiscard]] SubpicturePicture ComposePicture(const SubpictureUnit& unit,
                                               const DisplayPalette& palette,
                                               std::optional<int> onlyType);

}  // namespace quillomar
