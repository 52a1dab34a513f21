#include "bitmap/shown_bitmap.h"

#include "spu/position.h"

namespace quillomar {

ShownBitmap FindShownBitmap(const SubpictureUnit& unit) {
  const SpuState& state = unit.state;
  if (state.width == 0) return {};
  const auto pixels = ShownPixels(unit);
  const int height = static_cast<int>(pixels.size()) / state.width;
  return {state.area.sx, state.area.sy, state.width, height, pixels};
}

}  // namespace quillomar
