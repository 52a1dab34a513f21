#include "ui/picture_image.h"

#include <algorithm>

namespace quillomar {
namespace {

constexpr int kBytesPerPixel = 4;

}  // namespace

QImage ToImage(const SubpicturePicture& picture) {
  const auto pixels = static_cast<std::size_t>(std::max(picture.width, 0)) *
                      static_cast<std::size_t>(std::max(picture.height, 0));
  if (pixels == 0 || picture.rgba.size() / kBytesPerPixel < pixels) return {};
  const QImage image(picture.rgba.data(), picture.width, picture.height,
                     static_cast<qsizetype>(picture.width) * kBytesPerPixel,
                     QImage::Format_RGBA8888);
  // Premultiplied, so that smoothing does not draw the colour of transparent pixels into the edges.
  return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace quillomar
