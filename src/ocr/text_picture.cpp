#include "ocr/text_picture.h"

#include <algorithm>

#include "ocr/diagonal_gaps.h"

namespace quillomar {
namespace {

constexpr std::uint8_t kInk = 0;
constexpr std::uint8_t kPaper = 255;
constexpr int kFillWithText = 255;
// A type is that of soft edges when so much of it touches the text.
constexpr double kSoftShare = 0.6;

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
  FindSoftEdges(pixels, textType, unit.textRoles.otherType);
  hasInk_ = std::find(ink_.begin(), ink_.end(), true) != ink_.end();
}

EnginePicture TextPicture::Unpack() const {
  EnginePicture picture;
  picture.width = width_ + kPictureMargin;
  picture.height = height_;
  picture.language = language_;
  const auto rowSize = static_cast<std::size_t>(picture.width);
  picture.grey.assign(rowSize * static_cast<std::size_t>(height_), kPaper);
  const auto columns = static_cast<std::size_t>(width_);
  for (std::size_t i = 0; i < ink_.size(); ++i) {
    const bool soft = !soft_.empty() && soft_[i];
    if (ink_[i] || soft)
      picture.grey[i / columns * rowSize + i % columns] = soft ? kSoftEdge : kInk;
  }
  return picture;
}

void TextPicture::FindSoftEdges(ByteSpan pixels, int textType, int softType) {
  const auto columns = static_cast<std::size_t>(width_);
  std::size_t found = 0, touching = 0;
  std::vector<bool> soft(pixels.size());
  const auto isText = [&](std::size_t i) { return i < pixels.size() && pixels[i] == textType; };
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    if (pixels[i] != softType) continue;
    ++found;
    soft[i] = true;
    const bool touches = isText(i + 1) || isText(i + columns) || (i > 0 && isText(i - 1)) ||
                         (i >= columns && isText(i - columns));
    if (touches) ++touching;
  }
  if (static_cast<double>(touching) > kSoftShare * static_cast<double>(found))
    soft_ = std::move(soft);
}

}  // namespace quillomar
