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
  Accent shape = Accent::kNone;  // of a single mark: kNone when it is like a dot
};
[[nodiscard]] MarksAbove FindMarksAbove(const Glyph& glyph, int refRow, float slant);

// The glyph without the marks above it.
[[nodiscard]] Glyph WithoutMarks(const Glyph& glyph);

}  // namespace quillomar
