#pragma once

#include <string>
#include <vector>

#include "ocr/disc_knowledge.h"
#include "ocr/line_recogniser.h"
#include "ocr/line_text.h"
#include "ocr/pattern_database.h"

namespace quillomar {

// Reads and decides the lines of a disc with what is known of it.
class LineReader {
 public:
  LineReader(const DiscKnowledge& knowledge, const PatternDatabase& taught, int spaceWidth)
      : knowledge_(knowledge), taught_(taught), spaceWidth_(spaceWidth) {}

  // Reads a line whose glyphs are all well known. Fails, leaving it unread, when one is not.
  [[nodiscard]] bool ReadFromPatterns(LineText& line, const std::string& language) const;
  // Reads a line with the recogniser.
  void Recognise(LineText& line, const EnginePicture& picture, LineRecogniser& recogniser,
                 const std::string& language) const;
  // Corrects a line by what all lines of the disc taught.
  void Settle(LineText& line, const std::string& language) const;
  // Adds a line to what was read of its picture.
  void Append(const LineText& line, EngineResult& result) const;

 private:
  void JoinTaught(LineText& line) const;
  void JoinKnownParts(LineText& line) const;
  [[nodiscard]] bool ReadGlyph(LineText& line, std::size_t glyph) const;
  void LayReadings(LineText& line, const std::string& language) const;
  void FixAccent(GlyphText& text, const Glyph& glyph, const GlyphLine& line) const;
  // What a glyph surely is; empty when that is not known.
  [[nodiscard]] std::u32string KnownText(const Glyph& glyph, const LineMetrics& metrics) const;
  void TakeKnown(LineText& line, std::size_t glyph) const;
  void PartWords(LineText& line) const;

  const DiscKnowledge& knowledge_;
  const PatternDatabase& taught_;
  int spaceWidth_;
};

}  // namespace quillomar
