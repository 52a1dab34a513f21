#pragma once

#include "ocr/glyphs.h"

namespace quillomar {

// Whether a glyph is an eighth note: a round head at the lower left, a thin stem, a flag to the
// right of the stem's top. Capitals such as J look like one but for the flag. Of a glyph of several
// components the stem may be broken.
[[nodiscard]] bool LooksLikeMusicNote(const Glyph& glyph, const GlyphLine& line);

}  // namespace quillomar
