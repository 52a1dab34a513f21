#pragma once

#include <QImage>

#include "editor/picture.h"

namespace quillomar {

// A picture that Qt can draw; null when there is nothing to draw.
[[nodiscard]] QImage ToImage(const SubpicturePicture& picture);

}  // namespace quillomar
