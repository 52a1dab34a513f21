// The best that Tesseract reaches alone: each line by itself, straightened by its estimated slant,
// twice the size, smoothed, without the signs that subtitles do not hold. Reads the pictures of a
// made-up set (N.pgm) and writes what it reads beside them (N.txt).
//
//   plain_ocr LANGUAGE FOLDER...
#include <filesystem>
#include <fstream>
#include <iostream>

#include "base/utf8.h"
#include "ocr/line_measure.h"
#include "ocr/tesseract_recogniser.h"

namespace quillomar::bench {
namespace {

constexpr int kMargin = 30;

EnginePicture ReadPgm(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::string kind;
  int width = 0, height = 0, most = 0;
  in >> kind >> width >> height >> most;
  in.get();
  EnginePicture picture;
  picture.width = width + kMargin;
  picture.height = height;
  for (int row = 0; row < height; ++row) {
    std::string bytes(static_cast<std::size_t>(width), '\xFF');
    in.read(bytes.data(), width);
    bytes.resize(static_cast<std::size_t>(picture.width), '\xFF');
    picture.grey.insert(picture.grey.end(), bytes.begin(), bytes.end());
  }
  return picture;
}

std::string Read(const EnginePicture& picture, LineRecogniser& recogniser) {
  DiscKnowledge knowledge;
  const std::vector<MeasuredLine> lines = MeasureLines(picture, true);
  for (const MeasuredLine& line : lines) LearnMeasures(line, knowledge);
  std::u32string text;
  for (const MeasuredLine& line : lines) {
    for (const Reading& reading :
         recogniser.Read(DrawLine(picture, PrepareLine(line, knowledge).line))) {
      if (reading.startsWord) text += U' ';
      text += reading.ch;
    }
    text += U'\n';
  }
  return ToUtf8(text);
}

}  // namespace
}  // namespace quillomar::bench

int main(int argc, char** argv) {
  using namespace quillomar;
  const auto source = MakeTesseractSource();
  const auto recogniser = source && argc > 2 ? source->Make(argv[1]) : nullptr;
  if (!recogniser) {
    std::cerr << "plain_ocr LANGUAGE FOLDER...\n";
    return 2;
  }
  for (int i = 2; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      if (entry.path().extension() != ".pgm") continue;
      std::ofstream out(std::filesystem::path(entry.path()).replace_extension(".txt"));
      out << bench::Read(bench::ReadPgm(entry.path()), *recogniser);
    }
  }
  return 0;
}
