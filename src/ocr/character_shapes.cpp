#include "ocr/character_shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace quillomar {
namespace {

using Place = CharacterShape::Place;

constexpr std::u32string_view kSmallLetters = U"acemnorsuvwxz\u0131\u00e6\u0153";
constexpr std::u32string_view kDescenders =
    U"gjpqy\u00e7\u00fd\u00ff\u00fe\u00c7,;()[]{}\u00bf\u00a1Q$\u201e\u201a\u00b6\u00a7/|";
constexpr std::u32string_view kLowMarks = U".,_\u2026\u201a\u201e";
constexpr std::u32string_view kMiddleMarks = U"-\u2013\u2014~=+\u00b7\u00ab\u00bb\u2022<>";
constexpr std::u32string_view kHighMarks =
    U"'\"`\u00b4\u2018\u2019\u201c\u201d\u00b0^*\u00aa\u00ba";
constexpr std::u32string_view kTallLetters = U"bdfhkl\u00df\u00fe";
constexpr std::size_t kFewMet = 3;

bool In(char32_t ch, std::u32string_view set) {
  return set.find(ch) != std::u32string_view::npos;
}

struct WidthClass {
  double width;
  std::u32string_view characters;
};
constexpr std::array<WidthClass, 6> kWidthClasses = {{
    {0.3, U".,:;'|!il\u00a1\u2019\u2018Ij\u00ec\u00ed\u00ee\u00ef\u00cc\u00cd\u00ce\u00cf"},
    {0.55, U"ftr()[]-/\"1\u201c\u201d"},
    {0.85, U"sczaeJ?\u00bf"},
    {1.25, U"ABCDEFGHKLNOPQRSTUVXYZ&"},
    {1.6, U"mwMW@%\u00e6\u0153\u00c6\u0152\u2026"},
    {1.8, U"\u2014"},
}};

bool IsLatin1Upper(char32_t ch) {
  return ch >= 0xC0 && ch <= 0xDE && ch != 0xD7;
}
bool IsLatin1Lower(char32_t ch) {
  return ch >= 0xDF && ch <= 0xFF && ch != 0xF7;
}
// Latin Extended-A pairs capitals and small letters, on even or on odd code points.
bool IsPaired(char32_t ch) {
  return (ch >= 0x100 && ch <= 0x137) || (ch >= 0x139 && ch <= 0x148) ||
         (ch >= 0x14A && ch <= 0x177) || (ch >= 0x179 && ch <= 0x17E);
}
bool IsOddUpper(char32_t ch) {
  return (ch >= 0x139 && ch <= 0x148) || (ch >= 0x179 && ch <= 0x17E);
}

}  // namespace

bool IsUpper(char32_t ch) {
  if (ch >= U'A' && ch <= U'Z') return true;
  if (ch < 0x80) return false;
  return IsLatin1Upper(ch) || ch == 0x178 || (IsPaired(ch) && (ch % 2 == 1) == IsOddUpper(ch)) ||
         (ch >= 0x391 && ch <= 0x3AB) || (ch >= 0x400 && ch <= 0x42F);
}

bool IsLower(char32_t ch) {
  if (ch >= U'a' && ch <= U'z') return true;
  if (ch < 0x80) return false;
  return IsLatin1Lower(ch) || (IsPaired(ch) && (ch % 2 == 1) != IsOddUpper(ch)) ||
         (ch >= 0x3AC && ch <= 0x3CE) || (ch >= 0x430 && ch <= 0x45F);
}

bool IsDigit(char32_t ch) {
  return ch >= U'0' && ch <= U'9';
}

char32_t ToLower(char32_t ch) {
  if (!IsUpper(ch)) return ch;
  if (ch < 0x100) return ch + 0x20;
  if (ch == 0x178) return 0xFF;
  return ch < 0x180 ? ch + 1 : ch;
}

char32_t ToUpper(char32_t ch) {
  if (!IsLower(ch) || ch == 0xDF) return ch;
  if (ch == 0xFF) return 0x178;
  if (ch < 0x100) return ch - 0x20;
  return ch < 0x180 ? ch - 1 : ch;
}

CharacterShape ShapeOf(char32_t ch) {
  CharacterShape shape;
  for (const WidthClass& widths : kWidthClasses) {
    if (In(ch, widths.characters)) shape.width = widths.width;
  }
  if (IsLatin1Upper(ch) && shape.width == 1) shape.width = 1.25;
  shape.descends = In(ch, kDescenders);
  shape.small = In(ch, kSmallLetters);
  shape.tall = IsUpper(ch) || IsDigit(ch) || In(ch, kTallLetters) || ch == U'!' || ch == U'?';
  if (In(ch, kLowMarks)) shape.place = Place::kLowMark;
  if (In(ch, kMiddleMarks)) shape.place = Place::kMiddleMark;
  if (In(ch, kHighMarks)) shape.place = Place::kHighMark;
  if (ch == U'"' || ch == 0xAB || ch == 0xBB || ch == 0x201C || ch == 0x201D) shape.parts = 2;
  if (ch == U'%' || ch == 0x2026) shape.parts = 3;
  return shape;
}

GlyphPlace PlaceOf(const PixelBox& box, const LineMetrics& metrics) {
  const double unit = metrics.xHeight;
  return {(metrics.baseline - box.y0 + 1) / unit, (box.y1 - metrics.baseline) / unit,
          box.Width() / unit};
}

void CharacterWidths::Add(char32_t ch, double width) {
  std::vector<int>& met = hundredths_[ch];
  const int hundredths = static_cast<int>(std::lround(width * 100));
  met.insert(std::upper_bound(met.begin(), met.end(), hundredths), hundredths);
}

double CharacterWidths::WidthOf(char32_t ch) const {
  const auto found = hundredths_.find(ch);
  if (found == hundredths_.end() || found->second.size() < kFewMet) return ShapeOf(ch).width;
  return found->second[(found->second.size() - 1) / 2] / 100.0;
}

}  // namespace quillomar
