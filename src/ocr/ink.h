#pragma once

#include <cstddef>
#include <vector>

#include "ocr/engine.h"

// The ink of a picture as runs and connected components.
namespace quillomar {

// All edges included.
struct PixelBox {
  int x0 = 0, x1 = -1, y0 = 0, y1 = -1;
  [[nodiscard]] int Width() const { return x1 - x0 + 1; }
  [[nodiscard]] int Height() const { return y1 - y0 + 1; }
  void Join(const PixelBox& other);
  friend bool operator==(const PixelBox&, const PixelBox&) = default;
};

// Columns `first` to `last` of a row.
struct InkRun {
  int row = 0, first = 0, last = 0;
  [[nodiscard]] int Length() const { return last - first + 1; }
};

struct Component {
  PixelBox box;
  int pixels = 0;
  std::vector<InkRun> runs;  // from the top, from the left
  void Add(const InkRun& run);
};

// Of ink that touches at a side or a corner; in the order of their first runs. None for a picture
// that holds fewer bytes than its size says.
[[nodiscard]] std::vector<Component> FindComponents(const EnginePicture& picture);

// Columns that both boxes cover.
[[nodiscard]] int OverlapX(const PixelBox& a, const PixelBox& b);
// Rows that both boxes cover.
[[nodiscard]] int OverlapY(const PixelBox& a, const PixelBox& b);

// The value at a share (0 to 1) of the sorted values; 0 of none.
[[nodiscard]] int ValueAtShare(std::vector<int> values, double share);

}  // namespace quillomar
