#pragma once

#include <vector>

#include "ocr/ink.h"

namespace quillomar {

// The ink of one line of text.
struct InkLine {
  std::vector<Component> components;
  PixelBox box;
  int typicalHeight = 0;  // median height of the picture's components that may be letters, pixels
};

// Parts the components of a picture into lines, from the top. Components stay whole but for those
// that reach through two lines.
[[nodiscard]] std::vector<InkLine> SplitLines(std::vector<Component> components);

}  // namespace quillomar
