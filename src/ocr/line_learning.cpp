#include "ocr/line_learning.h"

#include <optional>

namespace quillomar {
namespace {

constexpr double kLeastWeight = 0.2;
// Glyphs further apart than this are never one; x-heights.
constexpr double kJoinGap = 0.35;
// x-heights below the baseline
constexpr double kCloseGap = 0.25;

// Whether ink close by was not read: then this may be part of a letter only.
bool IsBrokenOff(const LineText& line, std::size_t glyph) {
  const auto close = [&line](std::size_t i) { return line.RelativeGapBefore(i) < kCloseGap; };
  const bool before = glyph > 0 && line.texts[glyph - 1].text.empty() && close(glyph);
  const std::size_t next = glyph + 1;
  const bool after = next < line.texts.size() && line.texts[next].text.empty() && close(next);
  return before || after;
}

}  // namespace

void LearnText(const LineText& line, DiscKnowledge& knowledge) {
  for (const auto& [left, right] : line.joined) {
    const std::size_t first = knowledge.patterns.FindOrAdd(left);
    knowledge.joins.Learn({first, knowledge.patterns.FindOrAdd(right)}, true);
  }
  std::optional<std::size_t> previous;
  for (std::size_t i = 0; i < line.texts.size(); ++i) {
    const GlyphText& text = line.texts[i];
    const Glyph& glyph = line.line.glyphs[i];
    const std::size_t id = knowledge.patterns.FindOrAdd(PatternOf(glyph, line.line.metrics));
    const double gap = line.RelativeGapBefore(i);
    if (previous && gap < kJoinGap) knowledge.joins.Learn({*previous, id}, false);
    if (i > 0 && !text.text.empty()) knowledge.spaces.Learn(gap, text.startsWord);
    previous = id;
    if (text.text.empty() || IsBrokenOff(line, i)) continue;
    knowledge.patterns.Vote(id, text.text, kLeastWeight + text.confidence);
    if (text.text.size() == 1) {
      knowledge.widths.Add(text.text[0],
                           static_cast<double>(glyph.box.Width()) / line.line.metrics.xHeight);
    }
  }
}

}  // namespace quillomar
