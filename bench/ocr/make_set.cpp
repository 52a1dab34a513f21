// Writes a set of made-up subtitles for OCR: for each kind of type a .sup file, the truth, and, for
// programs that read pictures, a folder of PGM files (ink black on white, as the engine gets them).
//
//   make_ocr_set STYLES PHRASES LANGUAGE SEED COUNT tuning|held-out OUT-FOLDER
//
// Truth: "unit N", "line SLANT TEXT" and, for each glyph that has ink, "glyph CODE TOP x0,x1 ...".
#include <filesystem>
#include <fstream>
#include <iostream>

#include "author/spu_builder.h"
#include "phrase_book.h"
#include "typesetter.h"

namespace quillomar::bench {
namespace {

constexpr int kPalWidth = 720;
constexpr int kLastLine = 560;
constexpr char32_t kNote = U'\u266A';

struct SetRequest {
  std::string phrases, language, out;
  unsigned seed = 0;
  int count = 0;
  bool heldOut = false;
};

void Put(std::ofstream& out, const std::vector<std::uint8_t>& bytes) {
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::string> Cropped(const std::vector<std::string>& rows, TypesetPicture& picture) {
  std::size_t top = 0, bottom = rows.size();
  const auto blank = [](const std::string& row) {
    return row.find_first_not_of(kBackgroundDigit) == std::string::npos;
  };
  while (top + 1 < bottom && blank(rows[top])) ++top;
  while (bottom > top + 1 && blank(rows[bottom - 1])) --bottom;
  top -= top % 2;
  for (TruthLine& line : picture.lines) {
    for (TruthGlyph& glyph : line.glyphs) glyph.top -= static_cast<int>(top);
  }
  return {rows.begin() + static_cast<std::ptrdiff_t>(top),
          rows.begin() + static_cast<std::ptrdiff_t>(bottom)};
}

void WriteTruth(std::ofstream& out, int number, const TypesetPicture& picture) {
  out << "unit " << number << '\n';
  for (const TruthLine& line : picture.lines) {
    std::u32string text = line.text;
    std::replace(text.begin(), text.end(), kNote, U'#');
    out << "line " << line.slant << ' ' << ToUtf8(text) << '\n';
    for (const TruthGlyph& glyph : line.glyphs) {
      if (glyph.ch == U' ' || glyph.ch == U'\u00A0') continue;
      out << "glyph " << static_cast<unsigned long>(glyph.ch == kNote ? U'#' : glyph.ch) << ' '
          << glyph.top;
      for (const auto& [first, last] : glyph.rows) out << ' ' << first << ',' << last;
      out << '\n';
    }
  }
}

void WriteSup(std::ofstream& out, int number, const std::vector<std::string>& rows) {
  const int width = static_cast<int>(rows[0].size()), height = static_cast<int>(rows.size());
  const auto description =
      author::Subtitle(rows, (kPalWidth - width) / 2, (kLastLine - height) & ~1, 200);
  const auto pts = static_cast<std::uint32_t>(number) * 270000U;
  Bytes record = {'S', 'P'};
  for (const unsigned shift : {0U, 8U, 16U, 24U}) {
    record.push_back(static_cast<std::uint8_t>(pts >> shift));
  }
  record.resize(record.size() + 4);
  Put(out, record);
  Put(out, author::BuildSpu(description));
}

void WritePgm(const std::string& path, const std::vector<std::string>& rows) {
  std::ofstream out(path, std::ios::binary);
  out << "P5\n" << rows[0].size() << ' ' << rows.size() << "\n255\n";
  for (const std::string& row : rows) {
    for (const char pixel : row) out.put(pixel == kTextDigit ? '\0' : '\xFF');
  }
}

void WriteDisc(const TypeStyle& style, const SetRequest& request, const PhraseBook& phrases) {
  std::seed_seq seeds{request.seed, static_cast<unsigned>(std::hash<std::string>{}(style.name))};
  std::mt19937 random(seeds);
  Typesetter typesetter(style);
  const std::string base = request.out + "/" + style.name + "." + request.language;
  std::filesystem::create_directories(base);
  std::ofstream sup(base + ".sup", std::ios::binary), truth(base + ".truth");
  const double columns = 620 / (style.size * 0.52 * style.stretch);
  for (int number = 1; number <= request.count;) {
    const auto lines = BreakLines(phrases.Make(random),
                                  std::min<std::size_t>(36, static_cast<std::size_t>(columns)));
    const bool leaning = static_cast<double>(random() % 1000) / 1000 < style.italics;
    if (lines.size() > 3) continue;
    TypesetPicture picture = typesetter.Set(lines, std::vector<bool>(lines.size(), leaning));
    if (picture.rows[0].size() > static_cast<std::size_t>(kPalWidth)) continue;
    const std::vector<std::string> rows = Cropped(picture.rows, picture);
    WriteTruth(truth, number, picture);
    WriteSup(sup, number, rows);
    WritePgm(base + "/" + std::to_string(number) + ".pgm", rows);
    ++number;
  }
}

}  // namespace
}  // namespace quillomar::bench

int main(int argc, char** argv) {
  using namespace quillomar::bench;
  if (argc != 8) {
    std::cerr << "make_ocr_set STYLES PHRASES LANGUAGE SEED COUNT tuning|held-out OUT-FOLDER\n";
    return 2;
  }
  try {
    const SetRequest request{argv[2],
                             argv[3],
                             argv[7],
                             static_cast<unsigned>(std::stoul(argv[4])),
                             std::stoi(argv[5]),
                             std::string(argv[6]) == "held-out"};
    const PhraseBook phrases(request.phrases, request.heldOut);
    for (const TypeStyle& style : ReadStyles(argv[1])) WriteDisc(style, request, phrases);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
  return 0;
}
