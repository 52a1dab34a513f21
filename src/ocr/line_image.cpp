#include "ocr/line_image.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "spu/char_box.h"

namespace quillomar {
namespace {

constexpr int kScale = 2;
constexpr int kPad = 10;       // white around the ink, pixels of the picture
constexpr double kBlur = 0.8;  // standard deviation, pixels of the picture
constexpr std::uint8_t kWhite = 255;
constexpr int kReach = 4;  // of the blur, pixels of the image

std::array<double, 2 * kReach + 1> BlurWeights() {
  std::array<double, 2 * kReach + 1> weights{};
  double sum = 0;
  const double sigma = kBlur * kScale;
  for (int i = -kReach; i <= kReach; ++i) {
    const double weight = std::exp(-0.5 * i * i / (sigma * sigma));
    weights[static_cast<std::size_t>(i + kReach)] = weight;
    sum += weight;
  }
  for (double& weight : weights) weight /= sum;
  return weights;
}

// One direction of the blur; `step` is the distance of neighbours, `count` pixels lie on a lane.
void BlurLane(const std::uint8_t* from, std::uint8_t* to, int count, int step,
              const std::array<double, 2 * kReach + 1>& weights) {
  for (int i = 0; i < count; ++i) {
    double sum = 0;
    for (int k = -kReach; k <= kReach; ++k) {
      const int place = std::clamp(i + k, 0, count - 1);
      sum += weights[static_cast<std::size_t>(k + kReach)] * from[place * step];
    }
    to[i * step] = static_cast<std::uint8_t>(sum + 0.5);
  }
}

class LineDrawer {
 public:
  LineDrawer(const EnginePicture& picture, const GlyphLine& line) : picture_(picture), line_(line) {
    PixelBox box;
    for (const Glyph& glyph : line.glyphs) box.Join(glyph.box);
    image_.scale = kScale;
    image_.left = box.x0 - kPad;
    image_.top = box.y0 - kPad;
    image_.width = (box.Width() + 2 * kPad) * kScale;
    image_.height = (box.Height() + 2 * kPad) * kScale;
    image_.grey.assign(static_cast<std::size_t>(image_.width * image_.height), kWhite);
  }

  LineImage Draw() {
    for (const Glyph& glyph : line_.glyphs) {
      for (const Component& component : glyph.components) {
        for (const InkRun& run : component.runs) DrawSoftEdge(run);
      }
    }
    for (const Glyph& glyph : line_.glyphs) {
      for (const Component& component : glyph.components) {
        for (const InkRun& run : component.runs) {
          for (int x = run.first; x <= run.last; ++x) DrawPixel(x, run.row, 0);
        }
      }
    }
    Blur();
    return std::move(image_);
  }

 private:
  [[nodiscard]] std::uint8_t GreyAt(int x, int y) const {
    if (x < 0 || y < 0 || x >= picture_.width || y >= picture_.height) return kWhite;
    return picture_.grey[static_cast<std::size_t>(y * picture_.width + x)];
  }
  void DrawSoftEdge(const InkRun& run) {
    for (int y = run.row - 1; y <= run.row + 1; ++y) {
      for (int x = run.first - 1; x <= run.last + 1; ++x) {
        const std::uint8_t grey = GreyAt(x, y);
        if (grey > 0 && grey < kWhite) DrawPixel(x, y, grey);
      }
    }
  }
  void DrawPixel(int x, int y, std::uint8_t grey) {
    const double shift = (y - line_.metrics.baseline) * static_cast<double>(line_.slant);
    const int left = static_cast<int>(std::lround((x + shift - image_.left) * kScale));
    const int top = (y - image_.top) * kScale;
    for (int row = top; row < top + kScale; ++row) {
      for (int column = left; column < left + kScale; ++column) {
        if (column < 0 || column >= image_.width || row < 0 || row >= image_.height) continue;
        image_.grey[static_cast<std::size_t>(row * image_.width + column)] = grey;
      }
    }
  }
  void Blur() {
    const auto weights = BlurWeights();
    std::vector<std::uint8_t> other(image_.grey.size());
    for (int row = 0; row < image_.height; ++row) {
      const auto start = static_cast<std::size_t>(row * image_.width);
      BlurLane(&image_.grey[start], &other[start], image_.width, 1, weights);
    }
    for (int column = 0; column < image_.width; ++column) {
      const auto start = static_cast<std::size_t>(column);
      BlurLane(&other[start], &image_.grey[start], image_.height, image_.width, weights);
    }
  }

  const EnginePicture& picture_;
  const GlyphLine& line_;
  LineImage image_;
};

}  // namespace

PixelBox LineImage::ToPicture(const PixelBox& box) const {
  return {left + box.x0 / scale, left + box.x1 / scale, top + box.y0 / scale, top + box.y1 / scale};
}

LineImage DrawLine(const EnginePicture& picture, const GlyphLine& line) {
  return LineDrawer(picture, line).Draw();
}

}  // namespace quillomar
