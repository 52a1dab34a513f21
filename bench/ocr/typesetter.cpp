#include "typesetter.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quillomar::bench {
namespace {

// Has what the others lack (music notes).
constexpr const char* kSpareFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr int kStemPixels = 400;
constexpr double kFixed = 65536;

void SetField(TypeStyle& style, const std::string& key, const std::string& value) {
  if (key == "font") style.font = value;
  if (key == "italic-font") style.italicFont = value;
  if (key == "size") style.size = std::stoi(value);
  if (key == "slant") style.slant = std::tan(std::stod(value) * std::acos(-1.0) / 180);
  if (key == "italics") style.italics = std::stod(value);
  if (key == "stretch") style.stretch = std::stod(value);
  if (key == "tracking") style.tracking = std::stod(value);
  if (key == "pitch") style.pitch = std::stod(value);
  if (key == "outline") style.outline = std::stoi(value);
  if (key == "edge") {
    style.edge = value == "hard" ? Edge::kHard : value == "thin" ? Edge::kThin : Edge::kSmooth;
  }
  if (key == "hinted") style.hinted = value == "yes";
  if (key == "fractional") style.fractional = value == "yes";
}

// Coverage of one glyph, 0 to 255, placed in the picture.
struct Coverage {
  int left = 0, top = 0, width = 0, height = 0;
  std::vector<std::uint8_t> values;
};

struct Placed {
  char32_t ch = 0;
  Coverage coverage;
};
struct SetLine {
  std::vector<Placed> glyphs;
  double advance = 0;
};

}  // namespace

std::vector<TypeStyle> ReadStyles(const std::string& path) {
  std::ifstream in(path);
  if (!in) throw std::runtime_error("cannot read " + path);
  std::vector<TypeStyle> styles;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    TypeStyle style;
    words >> style.name;
    for (std::string word; words >> word;) {
      const std::size_t equals = word.find('=');
      SetField(style, word.substr(0, equals), word.substr(equals + 1));
    }
    styles.push_back(style);
  }
  return styles;
}

class FontLibrary {
 public:
  explicit FontLibrary(const TypeStyle& style) : style_(style) {
    if (FT_Init_FreeType(&library_) != 0) throw std::runtime_error("no FreeType");
    upright_ = Load(style.font);
    italic_ = Load(style.italicFont.empty() ? style.font : style.italicFont);
    spare_ = Load(kSpareFont);
    if (!style.italicFont.empty()) trueSlant_ = StemSlope(italic_) * style.stretch;
    for (const FT_Face face : {upright_, italic_, spare_}) {
      FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(style.size));
    }
  }
  ~FontLibrary() { FT_Done_FreeType(library_); }
  FontLibrary(const FontLibrary&) = delete;
  FontLibrary& operator=(const FontLibrary&) = delete;

  // Slant of the lines that lean.
  [[nodiscard]] double Slant() const {
    return style_.italicFont.empty() ? style_.slant * style_.stretch : trueSlant_;
  }

  SetLine Set(const std::u32string& text, bool leaning) {
    SetLine line;
    FT_UInt previous = 0;
    FT_Face previousFace = nullptr;
    for (const char32_t ch : text) {
      FT_Face face = leaning ? italic_ : upright_;
      if (FT_Get_Char_Index(face, ch) == 0) face = spare_;
      const FT_UInt glyph = FT_Get_Char_Index(face, ch);
      if (glyph == 0) throw std::runtime_error("a glyph is missing in " + style_.font);
      if (previous != 0 && face == previousFace) line.advance += Kerning(face, previous, glyph);
      const double x = style_.fractional ? line.advance : std::round(line.advance);
      line.glyphs.push_back({ch, Render(face, glyph, x, leaning && style_.italicFont.empty())});
      line.advance += style_.tracking + Advance(face);
      previous = glyph;
      previousFace = face;
    }
    return line;
  }

 private:
  FT_Face Load(const std::string& path) {
    FT_Face face = nullptr;
    if (FT_New_Face(library_, path.c_str(), 0, &face) != 0) {
      throw std::runtime_error("cannot load " + path);
    }
    return face;
  }

  double Kerning(FT_Face face, FT_UInt left, FT_UInt right) const {
    FT_Vector delta{};
    FT_Get_Kerning(face, left, right, FT_KERNING_DEFAULT, &delta);
    return static_cast<double>(delta.x) / 64 * style_.stretch;
  }
  [[nodiscard]] double Advance(FT_Face face) const {
    const double pixels = static_cast<double>(face->glyph->linearHoriAdvance) / kFixed;
    const double hinted = static_cast<double>(face->glyph->metrics.horiAdvance) / 64;
    return (style_.hinted && style_.stretch == 1 ? hinted : pixels) * style_.stretch;
  }

  Coverage Render(FT_Face face, FT_UInt glyph, double x, bool slanted) const {
    const auto fixed = [](double value) {
      return static_cast<FT_Fixed>(std::lround(value * kFixed));
    };
    FT_Matrix matrix{fixed(style_.stretch), fixed(slanted ? style_.slant * style_.stretch : 0), 0,
                     fixed(1)};
    const double whole = std::floor(x);
    FT_Vector shift{static_cast<FT_Pos>(std::lround((x - whole) * 64)), 0};
    FT_Set_Transform(face, &matrix, &shift);
    const FT_Int32 flags =
        FT_LOAD_RENDER | (style_.hinted ? FT_LOAD_TARGET_NORMAL : FT_LOAD_NO_HINTING);
    if (FT_Load_Glyph(face, glyph, flags) != 0) throw std::runtime_error("cannot render");
    const FT_GlyphSlot slot = face->glyph;
    Coverage out{static_cast<int>(whole) + slot->bitmap_left,
                 -slot->bitmap_top,
                 static_cast<int>(slot->bitmap.width),
                 static_cast<int>(slot->bitmap.rows),
                 {}};
    for (int row = 0; row < out.height; ++row) {
      const std::uint8_t* from = slot->bitmap.buffer + row * slot->bitmap.pitch;
      out.values.insert(out.values.end(), from, from + out.width);
    }
    return out;
  }

  // Slope of the stems of "l", "I" and "H" in columns a row, by the left edge of large glyphs.
  static double StemSlope(FT_Face face) {
    FT_Set_Pixel_Sizes(face, 0, kStemPixels);
    FT_Set_Transform(face, nullptr, nullptr);
    std::vector<double> slopes;
    for (const char ch : {'l', 'I', 'H'}) {
      FT_Load_Char(face, static_cast<FT_ULong>(ch), FT_LOAD_RENDER | FT_LOAD_NO_HINTING);
      const FT_Bitmap& bitmap = face->glyph->bitmap;
      const auto edge = [&bitmap](double share) {
        const int row = static_cast<int>(share * bitmap.rows);
        int column = 0;
        while (column < static_cast<int>(bitmap.width) &&
               bitmap.buffer[row * bitmap.pitch + column] < 128) {
          ++column;
        }
        return static_cast<double>(column);
      };
      slopes.push_back((edge(0.3) - edge(0.7)) / (0.4 * bitmap.rows));
    }
    std::sort(slopes.begin(), slopes.end());
    return slopes[1];
  }

  TypeStyle style_;
  FT_Library library_ = nullptr;
  FT_Face upright_ = nullptr, italic_ = nullptr, spare_ = nullptr;
  double trueSlant_ = 0;
};

Typesetter::Typesetter(const TypeStyle& style)
    : style_(style), fonts_(std::make_unique<FontLibrary>(style)) {}
Typesetter::~Typesetter() = default;

namespace {

// Coverage of all glyphs together, and what is made of it.
class Canvas {
 public:
  Canvas(int width, int height)
      : width_(width), height_(height), values_(static_cast<std::size_t>(width * height)) {}

  void Add(const Coverage& glyph) {
    for (int row = 0; row < glyph.height; ++row) {
      for (int column = 0; column < glyph.width; ++column) {
        const int value = glyph.values[static_cast<std::size_t>(row * glyph.width + column)];
        int& sum =
            values_[static_cast<std::size_t>((glyph.top + row) * width_ + glyph.left + column)];
        sum = std::min(sum + value, 255);
      }
    }
  }

  [[nodiscard]] std::vector<std::string> Rows(int textFrom, int softFrom, int outline) const {
    std::vector<std::string> rows(static_cast<std::size_t>(height_),
                                  std::string(static_cast<std::size_t>(width_), kBackgroundDigit));
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x) {
        const int value = At(x, y);
        char& pixel = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
        if (value >= textFrom)
          pixel = kTextDigit;
        else if (value >= softFrom)
          pixel = kSoftDigit;
        else if (NearInk(x, y, outline, softFrom))
          pixel = kOutlineDigit;
      }
    }
    return rows;
  }

 private:
  [[nodiscard]] int At(int x, int y) const {
    return values_[static_cast<std::size_t>(y * width_ + x)];
  }
  [[nodiscard]] bool NearInk(int x, int y, int distance, int softFrom) const {
    for (int dy = -distance; dy <= distance; ++dy) {
      for (int dx = -distance; dx <= distance; ++dx) {
        if (dx * dx + dy * dy > distance * distance + 1) continue;
        const int nx = x + dx, ny = y + dy;
        if (nx >= 0 && ny >= 0 && nx < width_ && ny < height_ && At(nx, ny) >= softFrom)
          return true;
      }
    }
    return false;
  }

  int width_, height_;
  std::vector<int> values_;
};

TruthGlyph TruthOf(char32_t ch, const Coverage& glyph, int textFrom) {
  TruthGlyph truth;
  truth.ch = ch;
  truth.top = glyph.top;
  for (int row = 0; row < glyph.height; ++row) {
    std::pair<int, int> extent{1, 0};
    for (int column = 0; column < glyph.width; ++column) {
      if (glyph.values[static_cast<std::size_t>(row * glyph.width + column)] < textFrom) continue;
      if (extent.first > extent.second) extent.first = glyph.left + column;
      extent.second = glyph.left + column;
    }
    truth.rows.push_back(extent);
  }
  return truth;
}

int TextFrom(Edge edge) {
  return edge == Edge::kHard ? 128 : edge == Edge::kSmooth ? 150 : 200;
}
int SoftFrom(Edge edge) {
  return edge == Edge::kHard ? 128 : 64;
}

}  // namespace

TypesetPicture Typesetter::Set(const std::vector<std::u32string>& lines,
                               const std::vector<bool>& italics) {
  std::vector<SetLine> set;
  double widest = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    set.push_back(fonts_->Set(lines[i], italics[i]));
    widest = std::max(widest, set.back().advance);
  }
  const int margin = style_.outline + style_.size / 2 + 2;
  const int pitch = static_cast<int>(std::lround(style_.size * style_.pitch));
  const int width = static_cast<int>(widest) + 2 * margin;
  const int height = pitch * static_cast<int>(lines.size() - 1) + style_.size * 8 / 5 + 2 * margin;
  Canvas canvas(width, height);
  TypesetPicture picture;
  for (std::size_t i = 0; i < set.size(); ++i) {
    const int left = margin + static_cast<int>((widest - set[i].advance) / 2);
    const int baseline = margin + style_.size * 11 / 10 + static_cast<int>(i) * pitch;
    TruthLine truth{lines[i], italics[i] ? fonts_->Slant() : 0, {}};
    for (Placed& glyph : set[i].glyphs) {
      glyph.coverage.left += left;
      glyph.coverage.top += baseline;
      canvas.Add(glyph.coverage);
      truth.glyphs.push_back(TruthOf(glyph.ch, glyph.coverage, TextFrom(style_.edge)));
    }
    picture.lines.push_back(std::move(truth));
  }
  picture.rows = canvas.Rows(TextFrom(style_.edge), SoftFrom(style_.edge), style_.outline);
  return picture;
}

}  // namespace quillomar::bench
