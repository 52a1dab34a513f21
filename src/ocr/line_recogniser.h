#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ocr/line_image.h"

namespace quillomar {

// One character as a recogniser saw it.
struct Reading {
  char32_t ch = 0;
  PixelBox box;           // straightened columns and rows of the picture; roughly right
  double confidence = 0;  // 0 to 1
  bool startsWord = false;
};

// Reads the image of a line of text.
class LineRecogniser {
 public:
  virtual ~LineRecogniser() = default;
  [[nodiscard]] virtual std::vector<Reading> Read(const LineImage& image) = 0;
};

// Makes recognisers; may be asked by several threads at once, each uses its own.
class LineRecogniserSource {
 public:
  virtual ~LineRecogniserSource() = default;
  // Two letters of the text's language, empty when unknown. Null when there is none.
  [[nodiscard]] virtual std::unique_ptr<LineRecogniser> Make(const std::string& language) = 0;
};

}  // namespace quillomar
