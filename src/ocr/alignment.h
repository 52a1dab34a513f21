#pragma once

#include <string>
#include <vector>

#include "ocr/character_shapes.h"
#include "ocr/line_recogniser.h"

namespace quillomar {

// Neighbouring glyphs and the neighbouring readings that stand for them. Either one reading for one
// or more glyphs or several readings for one glyph; none for ink that nothing was read of.
struct Match {
  std::size_t glyph = 0, glyphs = 1;
  std::size_t reading = 0, readings = 1;
};

// Lays the readings onto the glyphs at the least cost in place, width and shape, and in what is
// known of the glyphs: what each surely is, empty where that is not known. Every glyph is in
// exactly one match; a reading without ink is in none.
[[nodiscard]] std::vector<Match> AlignReadings(const std::vector<Reading>& readings,
                                               const std::vector<Glyph>& glyphs,
                                               const LineMetrics& metrics,
                                               const CharacterWidths& widths,
                                               const std::vector<std::u32string>& known);

}  // namespace quillomar
