#pragma once

#include <optional>

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// `which` of SetAlpha beyond the four pixel types.
inline constexpr int kAlphaAllButBackground = 4;
inline constexpr int kAlphaAll = 5;

// Position of the first command with that code in a sequence (offset of its code byte from the
// unit's start); nothing when there is none.
[[nodiscard]] std::optional<int> FindCommand(const SubpictureUnit& unit, std::uint8_t code,
                                             int sequence);

// Makes a sequence the current one and takes its colours and alphas. Returns the position of its
// set-contrast command; changes nothing for an index that does not exist.
std::optional<int> SelectControlSequence(SubpictureUnit& unit, int index);

// Sets the CLUT index (0 to 15) of a pixel type in the current sequence or, with unit.allSequences,
// in all that set colours. Marks the unit modified when a value changes. Fails on sequences that
// stand inside one another.
Result SetColour(SubpictureUnit& unit, int clutIndex, int pixelType);

// Sets the alpha (0 to 15) of a pixel type, of all but the background, or of all. Always marks the
// unit modified. Fails when the background is needed and the bitmap cannot be decoded, and on
// sequences that stand inside one another.
Result SetAlpha(SubpictureUnit& unit, int alpha, int which, const SpuContext& context);

// Mean alpha of the pixel types that occur and are not background; 0 when there are none.
[[nodiscard]] int MeanTextAlpha(SubpictureUnit& unit, const SpuContext& context);

}  // namespace quillomar
