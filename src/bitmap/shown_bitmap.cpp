#include "bitmap/shown_bitmap.h"

#include <algorithm>

namespace quillomar {

ShownBitmap FindShownBitmap(const SubpictureUnit& unit) {
  const SpuState& state = unit.state;
  const int width = state.areaAsFound.Columns();
  if (width == 0) return {};
  const int rows = static_cast<int>(unit.pixels.size()) / width;
  // A move that hides rows shortens the area and leaves the bitmap whole.
  const int hidden = std::clamp(state.areaAsFound.Lines() - state.area.Lines(), 0, rows);
  const int height = std::min(rows - hidden, state.height);
  const auto row = [width](int count) {
    return static_cast<std::size_t>(count) * static_cast<std::size_t>(width);
  };
  return {state.area.sx, state.area.sy, width, height,
          ByteSpan(unit.pixels).subspan(row(hidden), row(height))};
}

}  // namespace quillomar
