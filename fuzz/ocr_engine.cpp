// The engine over an arbitrary picture, with readings from a script. The first byte says whether
// slants are measured and which spaces part words, the second is the picture's width, the third and
// fourth the length of the script; readings of three bytes follow, then pixels, four to a byte.
#include <algorithm>
#include <memory>

#include "base/utf8.h"
#include "dvd/big_endian.h"
#include "fuzz_target.h"
#include "ocr/learning_engine.h"
#include "spu/char_box.h"
#include "support/memory_files.h"
#include "support/plain_type.h"

namespace quillomar::fuzz {
namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::uint8_t kItalics = 1;
constexpr std::size_t kReadingSize = 3;  // character, place and width, confidence and word start
constexpr std::size_t kPixelsInByte = 4;
constexpr int kSpaces = 16;
constexpr std::uint8_t kInkBits = 1, kSoftBits = 2;
constexpr std::u32string_view kCharacters =
    U"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,:;!?'\"-[]()&%/+=>\u00e9"
    U"\u00e0\u00fc\u00f1\u00e7\u00c9\u0153\u00ab\u2019\u2026";

class ScriptedRecogniser final : public LineRecogniser {
 public:
  explicit ScriptedRecogniser(ByteSpan script) : script_(script) {}

  std::vector<Reading> Read(const LineImage& image) override {
    std::vector<Reading> readings;
    int left = 0;
    for (std::size_t at = 0; at + kReadingSize <= script_.size(); at += kReadingSize) {
      left += script_[at + 1] >> 3;
      const PixelBox box = {left, left + 1 + 2 * (script_[at + 1] & 7), 0, image.height - 1};
      if (box.x1 >= image.width) break;
      const std::uint8_t more = script_[at + 2];
      readings.push_back({kCharacters[script_[at] % kCharacters.size()], image.ToPicture(box),
                          (more >> 1) / 127.0, more % 2 != 0});
    }
    return readings;
  }

 private:
  ByteSpan script_;
};

class ScriptedSource final : public LineRecogniserSource {
 public:
  explicit ScriptedSource(ByteSpan script) : script_(script) {}
  std::unique_ptr<LineRecogniser> Make(const std::string& language) override {
    return language == "none" ? nullptr : std::make_unique<ScriptedRecogniser>(script_);
  }

 private:
  ByteSpan script_;
};

EnginePicture PictureOf(ByteSpan pixels, int width, const std::string& language) {
  EnginePicture picture;
  picture.width = width;
  picture.height = static_cast<int>(pixels.size() * kPixelsInByte) / width;
  picture.language = language;
  const auto count = static_cast<std::size_t>(picture.width * picture.height);
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned bits = pixels[i / kPixelsInByte] >> 2 * (i % kPixelsInByte) & 3U;
    picture.grey.push_back(bits == kInkBits ? 0 : bits == kSoftBits ? kSoftEdge : 255);
  }
  return picture;
}

// What holds whatever was read.
void Check(const EngineResult& result, const EnginePicture& picture) {
  std::vector<std::u32string> texts(1);
  for (const EngineBox& box : result.boxes) {
    Require(box.y0 >= 0 && box.y0 <= box.y1 && box.y1 < picture.height);
    if (box.ch == kLineEnd) {
      texts.emplace_back();
    } else {
      texts.back() += box.ch == 0 ? kUnknownCharacter : box.ch;
    }
  }
  Require(texts.size() == result.lines.size() + 1 && texts.back().empty());
  for (std::size_t i = 0; i < result.lines.size(); ++i)
    Require(result.lines[i].text == ToUtf8(texts[i]));
}

void Teach(OcrEngine& engine, const EnginePicture& picture, const EngineResult& result,
           const EngineSettings& settings) {
  if (result.lines.empty()) return;
  const Lesson lesson{picture,
                      {result.boxes.begin(), result.boxes.begin() + 1},
                      result.lines[0].refRow,
                      result.lines[0].slant,
                      "rn"};
  (void)engine.CountAppearances(lesson, test::Pictures({picture}), settings);
  (void)engine.Teach(lesson);
}

void Run(ByteSpan input) {
  const std::size_t scriptSize =
      std::min<std::size_t>(GetShort(input, 2), input.size() - kHeaderSize);
  const ByteSpan script = input.subspan(kHeaderSize, scriptSize);
  const ByteSpan pixels = input.subspan(kHeaderSize + scriptSize);
  const EngineSettings settings{(input[0] & kItalics) != 0, (input[0] >> 1) % kSpaces};
  const int width = std::max<int>(input[1], 1);
  const EnginePicture picture = PictureOf(pixels, width, "fr");
  const test::Pictures pictures(
      {picture, PictureOf(pixels.first(pixels.size() / 2), width, "none")});
  test::MemoryFileSystem files;
  Reporter reporter(files);
  LearningEngine engine(std::make_unique<ScriptedSource>(script), files, reporter, "/db");
  const auto results = engine.RecogniseAll(pictures, settings, {});
  for (std::size_t i = 0; i < results.size(); ++i) {
    Require(results[i].has_value());
    Check(*results[i], pictures.Get(i));
  }
  Teach(engine, picture, *results[0], settings);
  Check(engine.Recognise(picture, settings), picture);
}

Bytes Seed(std::uint8_t settings, const std::vector<std::string>& lines, double slant,
           const std::string& readings) {
  const EnginePicture picture = test::SetInPlainType(lines, slant);
  constexpr int kWidth = 72;
  Bytes input(kHeaderSize);
  input[0] = settings;
  input[1] = kWidth;
  PutShort(input, 2, static_cast<std::uint16_t>(readings.size() * kReadingSize));
  for (const char ch : readings) {
    const std::size_t index = kCharacters.find(static_cast<char32_t>(ch));
    input.insert(input.end(), {static_cast<std::uint8_t>(index), 0xA4, 0xE0});
  }
  std::size_t count = 0;
  const int height = picture.height - test::kTypePitch + 4;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < kWidth; ++x, ++count) {
      if (count % kPixelsInByte == 0) input.push_back(0);
      const bool ink = picture.grey[static_cast<std::size_t>(y * picture.width + x)] == 0;
      if (ink) input.back() |= static_cast<std::uint8_t>(kInkBits << 2 * (count % kPixelsInByte));
    }
  }
  return input;
}

}  // namespace

std::vector<Bytes> Seeds() {
  return {Seed(kItalics, {"bad d"}, 0.25, "badd"), Seed(8, {"ab.", "mX"}, 0, "ab.rnX")};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size >= quillomar::fuzz::kHeaderSize) quillomar::fuzz::Run({data, size});
  return 0;
}
