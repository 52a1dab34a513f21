#include "editor/highlight.h"

#include <algorithm>

#include "bitmap/shown_bitmap.h"

namespace quillomar {
namespace {

// A scheme holds the colours and then the contrasts of the selected button, then the same two of
// the activated one.
std::size_t SchemeStart(ButtonLook look) {
  return look == ButtonLook::kActivated ? 2 * std::size_t{kPixelTypes} : 0;
}

}  // namespace

std::optional<ShownHighlight> FindHighlight(const SubpictureUnit& unit, const ClutRecord* clut,
                                            const DisplayPalette& shown,
                                            const ViewOptions& options) {
  const auto& buttons = unit.highlight.buttons;
  const auto index = static_cast<std::size_t>(options.button);
  if (options.buttonLook == ButtonLook::kNone || index >= buttons.size()) return std::nullopt;
  const Button& button = buttons[index];
  if (button.colourNumber == 0) return std::nullopt;
  const ButtonColours& scheme = unit.highlight.colours.at(button.colourNumber - 1U);
  ShownHighlight highlight{shown, button.x, button.y, button.width + 1, button.height + 1};
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    const std::size_t entry = SchemeStart(options.buttonLook) + kPixelTypes - 1 - type;
    const std::uint8_t colour = scheme.at(entry);
    if (clut != nullptr) highlight.palette.colours[type] = ToRgb(clut->entries.at(colour));
    highlight.palette.alphas[type] = scheme.at(entry + kPixelTypes);
  }
  if (options.ignoreTransparency) IgnoreTransparency(unit, highlight.palette);
  return highlight;
}

void PaintHighlight(const SubpictureUnit& unit, const ShownHighlight& highlight,
                    std::optional<int> onlyType, SubpicturePicture& picture) {
  const ShownBitmap shown = FindShownBitmap(unit);
  const auto pixels = MakePixels(highlight.palette, onlyType);
  const int left = std::clamp(highlight.x - shown.x, 0, shown.width);
  const int right = std::clamp(highlight.x + highlight.width - shown.x, left, shown.width);
  const int top = std::clamp(highlight.y - shown.y, 0, shown.height);
  const int bottom = std::clamp(highlight.y + highlight.height - shown.y, top, shown.height);
  for (int row = top; row < bottom; ++row) {
    for (int column = left; column < right; ++column) {
      const auto at = static_cast<std::size_t>(row) * static_cast<std::size_t>(shown.width) +
                      static_cast<std::size_t>(column);
      const RgbaPixel& pixel = pixels.at(shown.pixels[at]);
      std::copy(pixel.begin(), pixel.end(),
                picture.rgba.begin() + static_cast<std::ptrdiff_t>(at * pixel.size()));
    }
  }
}

}  // namespace quillomar
