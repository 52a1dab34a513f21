#include "ocr/accents.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "ocr/character_shapes.h"
#include "spu/char_box.h"

namespace quillomar {
namespace {

// What a mark's upper and lower rows must differ by to lean, in columns.
constexpr double kLean = 0.9;
// Other marks are that much wider than tall, dots are not.
constexpr double kFlatMark = 1.3;

struct LetterRow {
  char32_t base;
  std::array<char32_t, 5> accented;  // grave, acute, circumflex, tilde, diaeresis; 0: none
};
constexpr std::array<LetterRow, 7> kLetters = {{
    {U'a', {0xE0, 0xE1, 0xE2, 0xE3, 0xE4}},
    {U'e', {0xE8, 0xE9, 0xEA, 0, 0xEB}},
    {U'i', {0xEC, 0xED, 0xEE, 0, 0xEF}},
    {U'n', {0, 0, 0, 0xF1, 0}},
    {U'o', {0xF2, 0xF3, 0xF4, 0xF5, 0xF6}},
    {U'u', {0xF9, 0xFA, 0xFB, 0, 0xFC}},
    {U'y', {0, 0xFD, 0, 0, 0xFF}},
}};

// The largest part; what lies wholly above it are its marks.
const Component& BaseOf(const Glyph& glyph) {
  return *std::max_element(
      glyph.components.begin(), glyph.components.end(),
      [](const Component& a, const Component& b) { return a.pixels < b.pixels; });
}

bool IsAbove(const Component& part, const Component& base) {
  return part.box.y1 < base.box.y0 && OverlapX(part.box, base.box) > 0;
}

struct RowShape {
  double centre = 0;
  int width = 0;
};
RowShape ShapeOfRows(const Component& mark, int from, int to, int refRow, float slant) {
  PixelBox box;
  double sum = 0;
  int pixels = 0;
  for (const InkRun& run : mark.runs) {
    if (run.row < from || run.row > to) continue;
    const int shift = SlantShift(run.row, refRow, slant);
    box.Join({run.first + shift, run.last + shift, run.row, run.row});
    sum += (run.first + run.last) / 2.0 * run.Length() + shift * run.Length();
    pixels += run.Length();
  }
  return {sum / std::max(pixels, 1), box.Width()};
}

Accent ShapeOfMark(const Component& mark, int refRow, float slant) {
  const int half = (mark.box.Height() - 1) / 2;
  const RowShape upper = ShapeOfRows(mark, mark.box.y0, mark.box.y0 + half, refRow, slant);
  const RowShape lower = ShapeOfRows(mark, mark.box.y1 - half, mark.box.y1, refRow, slant);
  const double lean = upper.centre - lower.centre;
  if (lean > kLean) return Accent::kAcute;
  if (lean < -kLean) return Accent::kGrave;
  return mark.box.Width() >= kFlatMark * mark.box.Height() ? Accent::kCircumflex : Accent::kNone;
}

}  // namespace

AccentedLetter Decompose(char32_t ch) {
  const char32_t small = ToLower(ch);
  for (const LetterRow& row : kLetters) {
    const auto found = std::find(row.accented.begin(), row.accented.end(), small);
    if (small == 0 || found == row.accented.end()) continue;
    const char32_t base = small == ch ? row.base : ToUpper(row.base);
    return {base, static_cast<Accent>(found - row.accented.begin() + 1)};
  }
  return {ch, Accent::kNone};
}

char32_t Compose(const AccentedLetter& letter) {
  if (letter.accent == Accent::kNone) return letter.base;
  const char32_t small = ToLower(letter.base);
  const bool tilde = small == U'n' && letter.accent == Accent::kCircumflex;
  const Accent accent = tilde ? Accent::kTilde : letter.accent;
  for (const LetterRow& row : kLetters) {
    if (row.base != small) continue;
    const char32_t accented = row.accented[static_cast<std::size_t>(accent) - 1];
    return accented != 0 && small != letter.base ? ToUpper(accented) : accented;
  }
  return 0;
}

MarksAbove FindMarksAbove(const Glyph& glyph, int refRow, float slant) {
  MarksAbove marks;
  if (glyph.components.size() < 2) return marks;
  const Component& base = BaseOf(glyph);
  for (const Component& part : glyph.components) {
    if (!IsAbove(part, base)) continue;
    ++marks.count;
    marks.shape = ShapeOfMark(part, refRow, slant);
  }
  return marks;
}

bool AccentIsWrong(const std::u32string& text, const MarksAbove& marks) {
  if (marks.count < 1 || marks.count > 2) return false;
  // Two letters in one glyph with two dots
  if (text.size() == 2)
    return marks.count == 2 && (text == U"ii" || text == U"il" || text == U"li");
  if (text.size() != 1 || !(IsLetter(text[0]) || IsDigit(text[0]))) return false;
  const AccentedLetter letter = Decompose(text[0]);
  if (marks.count == 2) return letter.accent != Accent::kDiaeresis;
  const bool dotted = letter.base == U'i' || letter.base == U'j';
  return marks.shape != Accent::kNone && !dotted &&
         (letter.accent == Accent::kNone || letter.accent == Accent::kDiaeresis);
}

Glyph WithoutMarks(const Glyph& glyph) {
  const Component& base = BaseOf(glyph);
  Glyph bare;
  for (const Component& part : glyph.components) {
    if (!IsAbove(part, base)) bare.Join({part.box, {part}, part.pixels});
  }
  return bare;
}

std::u32string WithCedilla(const std::u32string& text, bool descends) {
  if (descends && text == U"c") return U"\u00e7";
  return descends && text == U"C" ? U"\u00c7" : text;
}

}  // namespace quillomar
