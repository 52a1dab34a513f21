#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

// A kind of type as a disc might use it, and the pictures it makes.
namespace quillomar::bench {

enum class Edge {
  kHard,    // text and outline only
  kSmooth,  // text, a soft edge, outline
  kThin,    // most of the edge is soft, text is the core of the strokes
};

struct TypeStyle {
  std::string name;
  std::string font;        // files
  std::string italicFont;  // empty: the upright one is slanted
  int size = 28;           // pixels an em
  double slant = 0.21;     // of the slanted one, columns a row
  double italics = 0;      // share of the lines
  double stretch = 1;      // of the width
  double tracking = 0;     // pixels added between glyphs
  double pitch = 1.2;      // between lines, em
  int outline = 2;         // pixels
  Edge edge = Edge::kSmooth;
  bool hinted = true;
  bool fractional = false;  // glyphs stand between columns too
};

// Reads "name key=value ..." lines.
[[nodiscard]] std::vector<TypeStyle> ReadStyles(const std::string& path);

struct TruthGlyph {
  char32_t ch = 0;
  int top = 0;
  // First and last text column of each row from the top on; first > last in a row without any.
  std::vector<std::pair<int, int>> rows;
};
struct TruthLine {
  std::u32string text;
  double slant = 0;
  std::vector<TruthGlyph> glyphs;
};

struct TypesetPicture {
  std::vector<std::string> rows;  // pixel types: '0' background, '1' text, '2' outline, '3' soft
  std::vector<TruthLine> lines;
};

// Pixel types that Typesetter writes.
inline constexpr char kBackgroundDigit = '0';
inline constexpr char kTextDigit = '1';
inline constexpr char kOutlineDigit = '2';
inline constexpr char kSoftDigit = '3';

class FontLibrary;

class Typesetter {
 public:
  // Throws when a font cannot be loaded.
  explicit Typesetter(const TypeStyle& style);
  ~Typesetter();
  // Lines centred above each other; `italics` says which lean.
  [[nodiscard]] TypesetPicture Set(const std::vector<std::u32string>& lines,
                                   const std::vector<bool>& italics);

 private:
  TypeStyle style_;
  std::unique_ptr<FontLibrary> fonts_;
};

}  // namespace quillomar::bench
