#pragma once

#include <vector>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Where a unit's bitmap is shown.
struct Place {
  DisplayArea area;
  std::uint16_t topOffset = 0;  // codes of the first row shown
  std::uint16_t bottomOffset = 0;
};

// Writes a place into the commands that hold the present one, also where later sequences repeat it,
// and parses anew; other areas and bitmaps of later sequences stay. Fails, changing nothing, when
// the first sequence names no area or bitmap and when a sequence stands inside another.
Result PutPlace(SubpictureUnit& unit, const Place& place, const SpuContext& context);

// Lines and columns of all bands as they were found, from state.bandsAsFound or, for a unit that
// has not been moved, from its tables.
[[nodiscard]] std::vector<BandPlace> FindBandsAsFound(const SpuState& state);
// Puts all bands as far from where they were found as the picture now is, into bytes and tables; an
// edge outside the frame's coordinates stops there. Keeps the places as found for the next move.
void MoveBands(SpuState& state, const std::vector<BandPlace>& asFound);

}  // namespace quillomar
