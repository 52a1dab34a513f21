#pragma once

#include <vector>

namespace quillomar {

inline constexpr char32_t kUnknownCharacter = U'_';
inline constexpr char32_t kLineEnd = U'\n';
inline constexpr char32_t kMusicNote = U'#';

// One character read from a bitmap. Rows are the bitmap's; columns are those of the line once it
// has been straightened. All edges are included.
struct CharBox {
  int x0 = 0, x1 = 0;
  int y0 = 0, y1 = 0;
  char32_t ch = 0;      // code point; '_' unknown, ' ' a gap between words, '\n' ends a line
  int line = 0;         // number of the line, from 0
  int lineRefRow = 0;   // the row of the line that straightening leaves in place
  float lineSlant = 0;  // columns per row; above 0 leans right
  bool doubtful = false;
  friend bool operator==(const CharBox&, const CharBox&) = default;
};

// Columns by which straightening a line moves a row to the right; a column of the straightened line
// is the bitmap's column plus this.
[[nodiscard]] inline int SlantShift(int row, int refRow, float slant) {
  return static_cast<int>(static_cast<float>(row - refRow) * slant);
}

inline constexpr int kUnknownType = 255;

// The parts that the pixel types besides the background play in a text; 255 is unknown.
struct TextRoles {
  int textType = kUnknownType;
  int outlineType = kUnknownType;
  int otherType = kUnknownType;
  friend bool operator==(const TextRoles&, const TextRoles&) = default;
};

}  // namespace quillomar
