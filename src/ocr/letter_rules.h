#pragma once

#include <string>

#include "ocr/line_text.h"

namespace quillomar {

// Corrects what a glyph was read as where its shape and place speak against it: capitals that look
// like their small letters, commas and apostrophes, dots of "i" and "!", quotation marks of all
// kinds, music notes.
void FixByShape(GlyphText& text, const Glyph& glyph, const LineMetrics& metrics);

// Finds square brackets by their shape, whatever they were read as. Puts the bracket before a
// capital that touches it, where only the capital was read.
void FixBracket(GlyphText& text, const Glyph& glyph, const GlyphLine& line);

// A plain upright stroke: "I" or "l" in most type without serifs.
[[nodiscard]] bool IsBar(const Glyph& glyph, const LineMetrics& metrics);

// Characters that look alike as bars.
[[nodiscard]] bool IsBarText(const std::u32string& text);

// Decides by the rest of their words which bars are "I", "l" or 1. Returns false when a bar of a
// line was left as it was because its word does not tell.
bool FixBars(LineText& line, const std::string& language);

}  // namespace quillomar
