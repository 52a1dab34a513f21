#include "ocr/line_measure.h"

namespace quillomar {

std::vector<MeasuredLine> MeasureLines(const EnginePicture& picture, bool italics) {
  std::vector<MeasuredLine> lines;
  for (InkLine& ink : SplitLines(FindComponents(picture))) {
    MeasuredLine line;
    if (italics) line.curve = MeasureSlantCurve(ink);
    line.baseline = FindBaseline(ink);
    line.ink = std::move(ink);
    lines.push_back(std::move(line));
  }
  return lines;
}

void LearnMeasures(const MeasuredLine& line, DiscKnowledge& knowledge) {
  knowledge.slants.Learn(line.curve);
  knowledge.heights.Add(line.ink, line.baseline);
}

LineText PrepareLine(const MeasuredLine& line, const DiscKnowledge& knowledge) {
  const LineMetrics metrics{line.baseline, knowledge.heights.XHeightOf(line.ink, line.baseline)};
  const auto slant = static_cast<float>(knowledge.slants.SlantOf(line.curve));
  LineText text;
  text.line = FindGlyphs(line.ink, metrics, slant);
  text.texts.resize(text.line.glyphs.size());
  return text;
}

}  // namespace quillomar
