#pragma once

#include <map>
#include <string>
#include <vector>

#include "ocr/character_shapes.h"

namespace quillomar {

// Boxes of the characters of a glyph in which several touch, from the left. The cuts are looked for
// where little ink joins the parts, near to where the characters' widths put them.
[[nodiscard]] std::vector<PixelBox> CutGlyph(const Glyph& glyph, const std::u32string& text,
                                             const GlyphLine& line, const CharacterWidths& widths);

}  // namespace quillomar
