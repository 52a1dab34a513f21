#include "ocr/diagonal_gaps.h"

#include <algorithm>
#include <cstddef>

namespace quillomar {
namespace {

constexpr std::uint8_t kMark = 6;
constexpr int kUseTextType = 255;

}  // namespace

void FillDiagonalGaps(std::span<std::uint8_t> pixels, int width, int height, int textType,
                      int excludedType, int replacement) {
  const auto at = [&](int column, int row) -> std::uint8_t& {
    return pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(column)];
  };
  const auto isText = [&](int column, int row) { return at(column, row) == textType; };
  for (int y = 1; y < height - 1; ++y) {
    for (int x = 2; x < width - 2; ++x) {
      if (isText(x, y) || at(x, y) == excludedType) continue;
      if (!isText(x, y - 1) || isText(x - 1, y) || isText(x - 1, y - 1)) continue;
      if (isText(x + 1, y + 1) || isText(x - 2, y + 1)) continue;
      // A mark is seen by the tests of the pixels behind it.
      if (isText(x - 1, y + 1) != isText(x, y + 1)) at(x, y) = kMark;
    }
  }
  const int filling = replacement >= kUseTextType ? textType : replacement;
  std::replace(pixels.begin(), pixels.end(), kMark, static_cast<std::uint8_t>(filling));
}

}  // namespace quillomar
