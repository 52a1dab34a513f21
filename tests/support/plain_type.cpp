#include "support/plain_type.h"

#include <algorithm>
#include <cmath>

namespace quillomar::test {
namespace {

struct Letter {
  char ch;
  int width, height;
};
constexpr Letter kLetters[] = {{'a', 6, 10}, {'o', 9, 10}, {'n', 12, 10}, {'m', 16, 10},
                               {'b', 6, 15}, {'d', 9, 15}, {'X', 13, 15}, {'.', 2, 2}};
constexpr int kStroke = 2;
constexpr int kWordGap = 10;
constexpr int kTypeWidth = 400;
constexpr std::uint8_t kDark = 110;

const Letter& LetterOf(char ch) {
  return *std::find_if(std::begin(kLetters), std::end(kLetters),
                       [ch](const Letter& letter) { return letter.ch == ch; });
}

void DrawLetter(EnginePicture& picture, int left, int baseline, const Letter& letter,
                double slant) {
  for (int row = baseline - letter.height + 1; row <= baseline; ++row) {
    const int shift = static_cast<int>(std::lround((baseline - row) * slant));
    const bool edge = baseline - row < kStroke || row - (baseline - letter.height + 1) < kStroke;
    for (int x = 0; x < letter.width; ++x) {
      if (!edge && x >= kStroke && x < letter.width - kStroke) continue;
      picture.grey[static_cast<std::size_t>(row * picture.width + left + shift + x)] = 0;
    }
  }
}

class PlainTypeRecogniser final : public LineRecogniser {
 public:
  PlainTypeRecogniser(const ReadingFault& fault, std::atomic<int>* linesRead)
      : fault_(fault), linesRead_(linesRead) {}

  std::vector<Reading> Read(const LineImage& image) override {
    if (linesRead_ != nullptr) ++*linesRead_;
    std::vector<Reading> readings;
    int lastRight = 0;
    for (int x = 0; x < image.width; ++x) {
      PixelBox box;
      for (; x < image.width && InkOfColumn(image, x).Height() > 0; ++x)
        box.Join(InkOfColumn(image, x));
      if (box.Width() <= 0) continue;
      const PixelBox place = image.ToPicture(box);
      const bool starts = readings.empty() || place.x0 - lastRight > (kTypeGap + kWordGap) / 2;
      readings.push_back({Nearest(place), place, 0.9, starts});
      lastRight = place.x1;
    }
    fault_(readings);
    return readings;
  }

 private:
  static PixelBox InkOfColumn(const LineImage& image, int x) {
    PixelBox box;
    for (int y = 0; y < image.height; ++y) {
      if (image.grey[static_cast<std::size_t>(y * image.width + x)] < kDark) box.Join({x, x, y, y});
    }
    return box;
  }
  static char32_t Nearest(const PixelBox& box) {
    const auto distance = [&box](const Letter& letter) {
      return std::abs(letter.width - box.Width()) + std::abs(letter.height - box.Height());
    };
    const auto* const best = std::min_element(
        std::begin(kLetters), std::end(kLetters),
        [&](const Letter& a, const Letter& b) { return distance(a) < distance(b); });
    return static_cast<char32_t>(best->ch);
  }

  const ReadingFault& fault_;
  std::atomic<int>* linesRead_;
};

}  // namespace

EnginePicture SetInPlainType(const std::vector<std::string>& lines, double slant) {
  EnginePicture picture;
  picture.language = "en";
  picture.width = kTypeWidth;
  picture.height = kTypeFirstBaseline + kTypePitch * static_cast<int>(lines.size());
  picture.grey.assign(static_cast<std::size_t>(picture.width * picture.height), 255);
  int baseline = kTypeFirstBaseline;
  for (const std::string& line : lines) {
    int left = kTypeMargin;
    for (const char ch : line) {
      if (ch == ' ') {
        left += kWordGap - kTypeGap;
        continue;
      }
      DrawLetter(picture, left, baseline, LetterOf(ch), slant);
      left += LetterOf(ch).width + kTypeGap;
    }
    baseline += kTypePitch;
  }
  return picture;
}

std::unique_ptr<LineRecogniser> PlainTypeSource::Make(const std::string& /*language*/) {
  return std::make_unique<PlainTypeRecogniser>(fault_, linesRead_);
}

}  // namespace quillomar::test
