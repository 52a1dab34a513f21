#pragma once

#include <optional>
#include <string>

#include "ocr/glyphs.h"

namespace quillomar {

enum class Accent { kNone, kGrave, kAcute, kCircumflex, kTilde, kDiaeresis };

// The letter without its accent, and the accent; other characters as they are.
struct AccentedLetter {
  char32_t base = 0;
  Accent accent = Accent::kNone;
};
[[nodiscard]] AccentedLetter Decompose(char32_t ch);
// 0 when there is no such letter.
[[nodiscard]] char32_t Compose(const AccentedLetter& letter);

// The marks above the largest part of a glyph.
struct MarksAbove {
  int count = 0;
  // Of a single mark: kNone when it is like a dot, kCircumflex for a tilde too, which is hardly
  // told from it at this size.
  Accent shape = Accent::kNone;
};
[[nodiscard]] MarksAbove FindMarksAbove(const Glyph& glyph, int refRow, float slant);

// Whether these marks are not those of what was read.
[[nodiscard]] bool AccentIsWrong(const std::u32string& text, const MarksAbove& marks);

// The glyph without the marks above it.
[[nodiscard]] Glyph WithoutMarks(const Glyph& glyph);

// A letter c that reaches below the baseline has a cedilla.
[[nodiscard]] std::u32string WithCedilla(const std::u32string& text, bool descends);

}  // namespace quillomar
