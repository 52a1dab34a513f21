#include "ocr/text_picture.h"

#include <algorithm>

#include "ocr/diagonal_gaps.h"

namespace quillomar {
namespace {

constexpr std::uint8_t kInk = 0;
constexpr std::uint8_t kPaper = 255;
constexpr int kFillWithText = 255;

}  // namespace

TextPicture::TextPicture(const SubpictureUnit& unit, int textType, std::string language)
    : width_(unit.state.width), language_(std::move(language)) {
  const BitmapStatistics& statistics = unit.state.statistics;
  height_ = std::max(statistics.box.bottom - statistics.box.top, 0);
  const auto size = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  const auto start =
      static_cast<std::size_t>(width_) * static_cast<std::size_t>(statistics.box.top);
  if (start + size > unit.pixels.size()) {
    height_ = 0;
    return;
  }
  const ByteSpan rows = ByteSpan(unit.pixels).subspan(start, size);
  Bytes pixels(rows.begin(), rows.end());
  FillDiagonalGaps(pixels, width_, height_, textType, statistics.backgroundType, kFillWithText);
  ink_.reserve(size);
  for (const std::uint8_t type : pixels) ink_.push_back(type == textType);
  hasInk_ = std::find(ink_.begin(), ink_.end(), true) != ink_.end();
}

EnginePicture TextPicture::Unpack() const {
  EnginePicture picture;
  picture.width = width_ + kPictureMargin;
  picture.height = height_;
  picture.language = language_;
  const auto rowSize = static_cast<std::size_t>(picture.width);
  picture.grey.assign(rowSize * static_cast<std::size_t>(height_), kPaper);
  auto ink = ink_.begin();
  for (std::size_t row = 0; row < static_cast<std::size_t>(height_); ++row) {
    for (std::size_t column = 0; column < static_cast<std::size_t>(width_); ++column) {
      if (*ink++) picture.grey[row * rowSize + column] = kInk;
    }
  }
  return picture;
}

}  // namespace quillomar
