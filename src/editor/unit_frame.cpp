#include "editor/unit_frame.h"

#include "bitmap/bmp.h"

namespace quillomar {
namespace {

constexpr std::size_t kRgbSize = 3;
constexpr std::size_t kRgbaSize = 4;
constexpr int kOpaque = 255;

std::uint8_t Mix(int below, int above, int alpha) {
  return static_cast<std::uint8_t>((above * alpha + below * (kOpaque - alpha) + kOpaque / 2) /
                                   kOpaque);
}

void LayPixel(std::uint8_t* below, const std::uint8_t* above) {
  for (std::size_t i = 0; i < kRgbSize; ++i) below[i] = Mix(below[i], above[i], above[kRgbSize]);
}

}  // namespace

FrameRequest FrameRequestFor(const SubpictureUnit& unit) {
  return {unit.Lba(), unit.state.pts, unit.globalTime - std::int64_t{unit.state.pts}};
}

std::optional<std::int64_t> EndTicks(const SubpictureUnit& unit) {
  const auto& sequences = unit.state.sequences;
  if (sequences.size() <= 1) return std::nullopt;
  return std::int64_t{sequences.back().delay} * kDelayUnitTicks;
}

FrameRequest EndFrameRequestFor(const SubpictureUnit& unit, const SubpictureUnit* next) {
  FrameRequest request = FrameRequestFor(unit);
  const std::int64_t untilNext = next == nullptr ? 0 : next->globalTime - unit.globalTime;
  const std::int64_t length = EndTicks(unit).value_or(untilNext);
  request.pts = static_cast<std::uint32_t>(unit.state.pts + length);
  request.choice = FrameChoice::kNearestIntra;
  return request;
}

void LayOver(VideoFrame& frame, const SubpicturePicture& picture) {
  const auto index = [](int row, int width, int column) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(column);
  };
  for (int row = 0; row < picture.height; ++row) {
    for (int column = 0; column < picture.width; ++column) {
      const int x = picture.x + column;
      const int y = picture.y + row;
      if (x < 0 || x >= frame.width || y < 0 || y >= frame.height) continue;
      LayPixel(&frame.rgb[index(y, frame.width, x) * kRgbSize],
               &picture.rgba[index(row, picture.width, column) * kRgbaSize]);
    }
  }
}

Result SaveFrame(FileSystem& files, const std::string& path, const VideoFrame& frame) {
  const auto file = files.Open(path, OpenMode::kCreate);
  return file ? file->WriteAt(0, MakeRgbBmp(frame.rgb, frame.width)) : Result::kFailed;
}

}  // namespace quillomar
