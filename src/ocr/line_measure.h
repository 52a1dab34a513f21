#pragma once

#include <vector>

#include "ocr/disc_knowledge.h"
#include "ocr/line_text.h"

namespace quillomar {

// The lines of a picture before anything is known of the disc.
struct MeasuredLine {
  InkLine ink;
  SlantCurve curve;
  int baseline = 0;
};
[[nodiscard]] std::vector<MeasuredLine> MeasureLines(const EnginePicture& picture, bool italics);
void LearnMeasures(const MeasuredLine& line, DiscKnowledge& knowledge);

// Straightens a line and finds its glyphs.
[[nodiscard]] LineText PrepareLine(const MeasuredLine& line, const DiscKnowledge& knowledge);

}  // namespace quillomar
