#include "ocr/letter_rules.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "ocr/character_shapes.h"
#include "ocr/music_note.h"
#include "spu/char_box.h"

namespace quillomar {
namespace {

constexpr std::u32string_view kSameShape = U"cosuvwxz";
constexpr std::u32string_view kCapitalsOfDescenders = U"YPG";
constexpr double kDescender = 0.2;  // x-heights below the baseline
constexpr std::u32string_view kBarTexts = U"Il1|";
// What bars are misread as though they have dots, hooks or serifs.
constexpr std::u32string_view kNoBars = U"i!|\u0131[]()";
constexpr std::u32string_view kVowels =
    U"aeiouyh\u00e0\u00e1\u00e2\u00e4\u00e8\u00e9\u00ea\u00eb\u00ec\u00ed\u00ee\u00ef\u00f2\u00f3"
    U"\u00f4\u00f6\u00f9\u00fa\u00fb\u00fc\u0153\u00e6";
constexpr double kBarWidth = 0.5;  // x-heights
// A bar is as thick everywhere, but for so many columns in a row and but for a share of the rows.
constexpr int kBarRoughness = 1;
constexpr double kBarRows = 0.9;
// Of the rows of a bracket and the letter that touches it; x-heights.
constexpr double kBracketRows = 0.85, kBracketDrop = 0.12;
constexpr double kBracketWidth = 0.9;  // x-heights
constexpr int kBarLean = 2;            // columns that straightening may leave
// Rises that only capitals and only small letters have, x-heights.
constexpr double kCapitalRise = 1.2;
constexpr double kSmallRise = 1.12;

bool In(char32_t ch, std::u32string_view set) {
  return set.find(ch) != std::u32string_view::npos;
}

char32_t PlainQuote(char32_t ch) {
  if (ch == 0x2018 || ch == 0x2019 || ch == U'`' || ch == 0xB4 || ch == 0x201A) return U'\'';
  if (ch == 0x201C || ch == 0x201D) return U'"';
  if (ch == 0x2013) return U'-';
  return ch;
}

char32_t FixMark(char32_t ch, const GlyphPlace& place) {
  if (ch == U'\'' && place.IsLowMark()) return U',';
  if ((ch == U',' || ch == U'.') && place.IsHighMark()) return U'\'';
  return ch;
}

char32_t FixCase(char32_t ch, const GlyphPlace& place) {
  if (In(ch, kCapitalsOfDescenders) && place.drop > kDescender) return ToLower(ch);
  if (!In(ToLower(ch), kSameShape)) return ch == U'0' && place.rise < kSmallRise ? U'o' : ch;
  if (place.rise > kCapitalRise) return ToUpper(ch);
  return place.rise < kSmallRise ? ToLower(ch) : ch;
}

// Whether a small mark stands above the rest of the glyph.
bool HasDot(const Glyph& glyph) {
  if (glyph.components.size() != 2) return false;
  const Component& a = glyph.components[0];
  const Component& b = glyph.components[1];
  const Component& upper = a.box.y0 < b.box.y0 ? a : b;
  const Component& lower = a.box.y0 < b.box.y0 ? b : a;
  return upper.box.y1 < lower.box.y0 && upper.box.Height() * 2 < lower.box.Height();
}

// Whether the strokes of a bracket bend: by how much its middle is off the line between its ends.
bool Bends(const std::vector<InkRun>& runs) {
  const auto middle = [&](double share) {
    const InkRun& run =
        runs[static_cast<std::size_t>(share * static_cast<double>(runs.size() - 1))];
    return (run.first + run.last) / 2.0;
  };
  return std::abs(middle(0.5) - (middle(0.05) + middle(0.95)) / 2) > kBarRoughness;
}

// The extent of each row of a straightened glyph, from the top.
std::vector<InkRun> RowsOf(const Glyph& glyph, const GlyphLine& line) {
  std::map<int, InkRun> rows;
  for (const Component& component : glyph.components) {
    for (const InkRun& run : component.runs) {
      const int shift = SlantShift(run.row, line.metrics.baseline, line.slant);
      const InkRun moved{run.row, run.first + shift, run.last + shift};
      const auto [place, isNew] = rows.emplace(run.row, moved);
      if (isNew) continue;
      place->second.first = std::min(place->second.first, moved.first);
      place->second.last = std::max(place->second.last, moved.last);
    }
  }
  std::vector<InkRun> list;
  list.reserve(rows.size());
  for (const auto& [row, run] : rows) list.push_back(run);
  return list;
}

// A stroke along one side with arms of equal reach at both ends and nothing between them, deeper
// than a capital; 0 when the glyph is no square bracket.
char32_t SquareBracketOf(const Glyph& glyph, const GlyphLine& line) {
  const GlyphPlace place = PlaceOf(glyph.box, line.metrics);
  if (!place.IsTall() || place.drop < kBracketDrop || place.width > kBracketWidth) return 0;
  const std::vector<InkRun> rows = RowsOf(glyph, line);
  const std::size_t end = rows.size() / 8 + 1;  // rows that an arm may take
  if (rows.size() < 4 * end) return 0;
  int arms[2] = {}, longest = 0;
  bool left = true, right = true;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    left = left && rows[i].first <= glyph.box.x0 + kBarLean;
    right = right && rows[i].last >= glyph.box.x1 - kBarLean;
    int& most = i < end ? arms[0] : i + end >= rows.size() ? arms[1] : longest;
    most = std::max(most, rows[i].Length());
  }
  const bool isBracket = left != right && std::min(arms[0], arms[1]) >= longest + kBarLean &&
                         std::abs(arms[0] - arms[1]) <= kBarLean;
  return isBracket ? (left ? U'[' : U']') : 0;
}

// Decides the bars of one word.
class BarWord {
 public:
  BarWord(LineText& line, std::size_t begin, std::size_t end, const std::string& language)
      : line_(line), begin_(begin), end_(end), language_(language) {
    for (std::size_t i = begin; i < end; ++i) {
      if (IsOpenBar(i)) continue;
      for (const char32_t ch : line.texts[i].text) {
        if (IsUpper(ch)) ++capitals_;
        if (IsLower(ch)) ++smalls_;
      }
    }
  }

  bool Fix() {
    bool sure = true;
    for (std::size_t i = begin_; i < end_; ++i) {
      if (!IsOpenBar(i)) continue;
      const std::optional<char32_t> ch = Decide(i);
      if (ch) line_.texts[i].text = *ch;
      sure = sure && ch;
    }
    return sure;
  }

 private:
  [[nodiscard]] bool IsOpenBar(std::size_t i) const {
    return !line_.texts[i].fixed && IsBarText(line_.texts[i].text) &&
           IsBar(line_.line.glyphs[i], line_.line.metrics);
  }
  [[nodiscard]] char32_t CharacterAt(std::size_t i) const {
    if (i < begin_ || i >= end_ || line_.texts[i].text.empty()) return 0;
    return line_.texts[i].text.front();
  }
  [[nodiscard]] char32_t Before(std::size_t i) const {
    if (i <= begin_ || line_.texts[i - 1].text.empty()) return 0;
    return line_.texts[i - 1].text.back();
  }
  [[nodiscard]] bool IsBarAt(std::size_t i) const { return i < end_ && IsOpenBar(i); }

  [[nodiscard]] std::optional<char32_t> Decide(std::size_t i) const {
    const char32_t before = Before(i), after = CharacterAt(i + 1);
    const bool follows = IsLetter(before) || (i > begin_ && IsBarAt(i - 1));
    const bool leads = IsLetter(after) || IsBarAt(i + 1);
    if (IsDigit(before) || (IsDigit(after) && !follows)) return U'1';
    if (!follows && !leads) return DecideAlone(after);
    // "we'll" and the like
    if (before == U'\'' && IsBarAt(i + 1) && language_ != "fr" && language_ != "it") return U'l';
    if (smalls_ == 0 && capitals_ >= 2) return U'I';
    if (follows && (IsLower(before) || (smalls_ > 0 && !IsUpper(after)))) {
      // The second of two bars that begin a word is decided with the first.
      return U'l';
    }
    if (follows) return {};
    return DecideFirst(i, after);
  }
  [[nodiscard]] std::optional<char32_t> DecideAlone(char32_t after) const {
    const bool elides = after == U'\'';
    if (language_ == "en" || language_.empty()) return U'I';
    if (elides && (language_ == "fr" || language_ == "it")) return U'l';
    return {};
  }
  [[nodiscard]] std::optional<char32_t> DecideFirst(std::size_t i, char32_t after) const {
    if (IsBarAt(i + 1)) return language_ == "es" ? U'l' : U'I';
    if (after == U'\'') return DecideAlone(after);
    if (IsUpper(after)) return U'I';
    if (IsLower(after) && !In(after, kVowels)) return U'I';
    return {};
  }

  LineText& line_;
  std::size_t begin_, end_;
  const std::string& language_;
  int capitals_ = 0, smalls_ = 0;
};

}  // namespace

bool IsBarText(const std::u32string& text) {
  return text.size() == 1 && In(text[0], kBarTexts);
}

bool IsBar(const Glyph& glyph, const LineMetrics& metrics) {
  const GlyphPlace place = PlaceOf(glyph.box, metrics);
  if (glyph.components.size() != 1 || !place.IsTall() || place.drop > 0.2 ||
      place.width > kBarWidth) {
    return false;
  }
  std::vector<int> lengths;
  for (const InkRun& run : glyph.components.front().runs) lengths.push_back(run.Length());
  const int thickness = ValueAtShare(lengths, 0.5);
  const auto even = std::count_if(lengths.begin(), lengths.end(), [thickness](int length) {
    return std::abs(length - thickness) <= kBarRoughness;
  });
  return static_cast<int>(lengths.size()) == glyph.box.Height() &&
         !Bends(glyph.components.front().runs) &&
         static_cast<double>(even) >= kBarRows * static_cast<double>(lengths.size()) &&
         glyph.box.Width() <= thickness + kBarLean;
}

void FixByShape(GlyphText& text, const Glyph& glyph, const LineMetrics& metrics) {
  for (char32_t& ch : text.text) ch = PlainQuote(ch);
  if (text.text.size() != 1) return;
  char32_t& ch = text.text[0];
  const GlyphPlace place = PlaceOf(glyph.box, metrics);
  const bool dotted = HasDot(glyph);
  if (In(ch, kNoBars) && IsBar(glyph, metrics)) ch = U'l';
  if (dotted && (ch == U'l' || ch == U'I')) ch = U'i';
  ch = FixCase(FixMark(ch, place), place);
}

void FixBracket(GlyphText& text, const Glyph& glyph, const GlyphLine& line) {
  if (text.text.size() > 1) return;
  if (const char32_t bracket = SquareBracketOf(glyph, line); bracket != 0) text.text = bracket;
  if (text.text.empty() || !IsUpper(text.text[0])) return;
  int rows = 0, last = glyph.box.y0;
  for (const InkRun& row : RowsOf(glyph, line)) {
    if (row.first > glyph.box.x0 + kBarRoughness) continue;
    ++rows;
    last = row.row;
  }
  // No capital has a stroke at its left that goes below the baseline.
  if (rows >= kBracketRows * glyph.box.Height() &&
      last - line.metrics.baseline > kBracketDrop * line.metrics.xHeight) {
    text.text.insert(text.text.begin(), U'[');
  }
}

bool FixBars(LineText& line, const std::string& language) {
  bool sure = true;
  for (std::size_t begin = 0; begin < line.texts.size();) {
    std::size_t end = begin + 1;
    while (end < line.texts.size() && !line.texts[end].startsWord) ++end;
    sure = BarWord(line, begin, end, language).Fix() && sure;
    begin = end;
  }
  return sure;
}

}  // namespace quillomar
