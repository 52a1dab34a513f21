#pragma once

#include <map>
#include <string>
#include <vector>

#include "ocr/glyphs.h"

namespace quillomar {

// What a character looks like in most type.
struct CharacterShape {
  enum class Place { kLetter, kLowMark, kMiddleMark, kHighMark };
  Place place = Place::kLetter;
  bool tall = false;      // rises above the small letters
  bool small = false;     // does not
  bool descends = false;  // reaches below the baseline
  int parts = 1;          // glyphs that stand side by side
  double width = 1;       // x-heights
};
[[nodiscard]] CharacterShape ShapeOf(char32_t ch);

// Where a glyph stands on its line.
struct GlyphPlace {
  double rise = 0;   // of its top above the baseline, x-heights
  double drop = 0;   // of its last row below the baseline, x-heights
  double width = 0;  // x-heights
  [[nodiscard]] bool IsTall() const { return rise > 1.18; }
  [[nodiscard]] bool IsLowMark() const { return rise < 0.5; }
  [[nodiscard]] bool IsHighMark() const { return drop < -0.4 && rise > 0.95; }
};
[[nodiscard]] GlyphPlace PlaceOf(const PixelBox& box, const LineMetrics& metrics);

// Widths of the characters of a disc as they were met, in x-heights.
class CharacterWidths {
 public:
  void Add(char32_t ch, double width);
  // The median, or what is usual.
  [[nodiscard]] double WidthOf(char32_t ch) const;

 private:
  std::map<char32_t, std::vector<int>> hundredths_;  // sorted
};

[[nodiscard]] bool IsUpper(char32_t ch);
[[nodiscard]] bool IsLower(char32_t ch);
[[nodiscard]] bool IsDigit(char32_t ch);
[[nodiscard]] inline bool IsLetter(char32_t ch) {
  return IsUpper(ch) || IsLower(ch);
}
// The small letter for a capital, others as they are.
[[nodiscard]] char32_t ToLower(char32_t ch);
[[nodiscard]] char32_t ToUpper(char32_t ch);

}  // namespace quillomar
