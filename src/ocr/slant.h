#pragma once

#include <array>
#include <cstddef>

#include "ocr/line_split.h"

namespace quillomar {

inline constexpr std::size_t kSlantSteps = 55;
inline constexpr double kLowestSlant = -0.05;
inline constexpr double kSlantStep = 0.01;
inline constexpr std::size_t kUprightStep = 5;

// How upright the stems of a line stand when it is sheared by each slant from the lowest on, in
// columns a row; the value of the unsheared line is 1.
struct SlantCurve {
  std::array<double, kSlantSteps> values{};
  int letters = 0;  // components that were measured
};

[[nodiscard]] SlantCurve MeasureSlantCurve(const InkLine& line);

// The slants of a disc's lines. Lines that lean clearly teach what slant the disc's italics have.
class SlantModel {
 public:
  void Learn(const SlantCurve& curve);
  // Slant of a line, 0 when it is upright.
  [[nodiscard]] double SlantOf(const SlantCurve& curve) const;

 private:
  SlantCurve sum_;
};

}  // namespace quillomar
