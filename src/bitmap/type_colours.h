#pragma once

#include <array>
#include <optional>
#include <vector>

#include "dvd/clut.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// One colour for each pixel type.
using TypeColours = std::array<Rgb, kPixelTypes>;

enum class PaletteChoice { kIfo, kAutomatic };

// The CLUT's entries that the unit's current set-colour command picks; nothing when either is
// missing.
[[nodiscard]] std::optional<TypeColours> ClutColours(const SubpictureUnit& unit,
                                                     const ClutRecord* clut);

// The colours given, of which each that equals one before it is moved towards the middle of the
// scale until the four differ.
[[nodiscard]] TypeColours AutomaticColours(const TypeColours& defaults);

// The pixel types whose colour another one has too, in order; empty when the four differ.
[[nodiscard]] std::vector<int> TypesOfEqualColour(const TypeColours& colours);

// What tells the pixel types apart in a bitmap that leaves the program and comes back.
struct ExchangeColours {
  TypeColours colours{};
  bool replaced = false;  // the CLUT was asked for, but gives two types the same colour
};
// The automatic colours when they are chosen, when there is no CLUT and, whatever the preferences
// say, when the CLUT's colours are not distinct.
[[nodiscard]] ExchangeColours ColoursForExchange(const SubpictureUnit& unit, const ClutRecord* clut,
                                                 const TypeColours& automaticDefaults,
                                                 PaletteChoice choice);

// Said about `replaced`, where the user wants to be warned.
inline constexpr const char* kEqualColoursWarning =
    "At least 2 pixel types have the same color!\n"
    "This could create problems when the bitmap is re-imported into Quillomar.\n"
    "I will use the \"Automatic Clut\" instead of the IFO Clut";

// The type whose colour is nearest by the sum of the channels' differences; the lower type of two
// that are equally near.
[[nodiscard]] std::uint8_t NearestType(const TypeColours& colours, Rgb colour);

}  // namespace quillomar
