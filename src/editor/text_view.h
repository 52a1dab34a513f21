#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "ocr/hearing_text.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

struct FramePoint {
  int x = 0, y = 0;  // pixels and lines of the frame
};

// A character of the recognised text with its box on the frame, which leans as its line does.
struct TextCharacter {
  char32_t ch = 0;
  bool unknown = false;   // could not be read
  bool doubtful = false;  // read, but worth a look
  // Corners clockwise from the upper left, those at the right and below just outside.
  std::array<FramePoint, 4> corners;
};

// What was read of the current unit.
struct TextView {
  // One for each of the unit's boxes, while they fit its bitmap.
  std::vector<TextCharacter> characters;
  // The text where there are no such boxes, or that of the saved subtitle.
  std::vector<std::string> lines;
  bool read = false;               // something was read
  bool showsSaved = false;         // the text as it was before anything was erased
  std::optional<BoxRange> chosen;  // characters to be selected
};

[[nodiscard]] TextView BuildTextView(const SubpictureUnit& unit, bool showSaved);

// The next box after `after` (-1: from the first) that could not be read or is doubtful; nothing
// when there is none or the boxes do not fit the bitmap.
[[nodiscard]] std::optional<int> NextDoubtfulBox(const SubpictureUnit& unit, int after);

}  // namespace quillomar
