#include "ocr/recognised_text.h"

#include <algorithm>

#include "base/utf8.h"

namespace quillomar {
namespace {

constexpr int kSpaceMargin = 2;  // columns on each side

EngineLine LineAt(const EngineResult& result, int line) {
  const auto index = static_cast<std::size_t>(line);
  return index < std::min(result.lines.size(), kMaxTextLines) ? result.lines[index] : EngineLine();
}

CharBox ToCharBox(const EngineBox& found, const EngineLine& line, int number, int textTop) {
  CharBox box;
  box.x0 = found.x0;
  box.x1 = found.x1;
  box.y0 = found.y0 + textTop;
  box.y1 = found.y1 + textTop;
  box.ch = found.ch == 0 ? kUnknownCharacter : found.ch;
  if (box.ch == U' ') {
    const int middle = (box.x0 + box.x1) / 2;
    box.x0 = std::min(box.x0 + kSpaceMargin, middle);
    box.x1 = std::max(box.x1 - kSpaceMargin, middle);
  }
  box.line = number;
  box.lineRefRow = line.refRow + textTop;
  box.lineSlant = line.slant;
  box.doubtful = found.doubtful;
  return box;
}

std::vector<CharBox> ToCharBoxes(const EngineResult& result, int textTop) {
  std::vector<CharBox> boxes;
  boxes.reserve(result.boxes.size());
  int number = 0;
  for (const EngineBox& found : result.boxes) {
    boxes.push_back(ToCharBox(found, LineAt(result, number), number, textTop));
    if (found.ch == kLineEnd) ++number;
  }
  return boxes;
}

std::span<const CharBox> BoxesOfLine(const std::vector<CharBox>& boxes, std::size_t line) {
  const auto isBefore = [](const CharBox& box, int number) { return box.line < number; };
  const int number = static_cast<int>(line);
  const auto first = std::lower_bound(boxes.begin(), boxes.end(), number, isBefore);
  const auto end = std::lower_bound(first, boxes.end(), number + 1, isBefore);
  return {first, end};
}

}  // namespace

std::string SpellMusicNotes(const std::string& text, std::span<const CharBox> lineBoxes) {
  const std::u32string found = FromUtf8(text);
  std::u32string spelt;
  std::size_t box = 0;
  for (std::size_t i = 0; i < found.size(); ++i, ++box) {
    const bool isNote = box < lineBoxes.size() && lineBoxes[box].ch == kMusicNote;
    if (!isNote || found.compare(i, 2, U".'") != 0) {
      spelt += found[i];
      continue;
    }
    if (i + 2 < found.size() && found[i + 2] == U'\'') {
      spelt += found.substr(i);
      break;
    }
    spelt += U"# ";
    ++i;
  }
  return ToUtf8(spelt);
}

void TakeRecognisedText(SubpictureUnit& unit, const EngineResult& result) {
  unit.charBoxes = ToCharBoxes(result, unit.state.statistics.box.top);
  unit.charBoxCount = static_cast<int>(unit.charBoxes.size());
  unit.ocrText.clear();
  for (std::size_t i = 0; i < std::min(result.lines.size(), kMaxTextLines); ++i) {
    const std::string& text = result.lines[i].text;
    if (text.empty()) break;
    const std::string spelt = SpellMusicNotes(text, BoxesOfLine(unit.charBoxes, i));
    unit.ocrText.push_back(ToUtf8(FromUtf8(spelt).substr(0, kMaxLineLength)));
  }
}

void KeepFirstText(SubpictureUnit& unit) {
  if (unit.savedOcrText.empty()) unit.savedOcrText = unit.ocrText;
}

}  // namespace quillomar
