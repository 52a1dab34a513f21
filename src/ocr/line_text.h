#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "ocr/line_recogniser.h"
#include "ocr/pattern_store.h"

namespace quillomar {

// What a glyph was read as.
struct GlyphText {
  std::u32string text;    // several characters where they touch; empty: could not be read
  double confidence = 0;  // 0 to 1
  bool startsWord = false;
  bool doubtful = false;
  bool fixed = false;  // as the user taught it: no rule changes it
};

// A line and what its glyphs were read as.
struct LineText {
  GlyphLine line;
  std::vector<GlyphText> texts;  // one for each glyph
  bool recognised = false;       // by the recogniser, not from known patterns
  // What the recogniser read, and the glyphs it was laid onto.
  std::vector<Reading> readings;
  std::vector<Glyph> glyphsAsFound;
  // Neighbours that became one glyph, because one character was read of both.
  std::vector<std::pair<GlyphPattern, GlyphPattern>> joined;
  // Music notes that only the picture's soft edges showed.
  std::vector<PixelBox> softNotes;

  // Makes one glyph of neighbours.
  void JoinGlyphs(std::size_t first, std::size_t count);
  // Columns between a glyph and the one before it.
  [[nodiscard]] int GapBefore(std::size_t glyph) const;
  // The same in x-heights.
  [[nodiscard]] double RelativeGapBefore(std::size_t glyph) const;
};

}  // namespace quillomar
