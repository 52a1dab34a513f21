#include "ocr/lesson.h"

#include <algorithm>

#include "base/utf8.h"
#include "ocr/recognised_text.h"

namespace quillomar {
namespace {

EngineBox ToEngineBox(const CharBox& box, int textTop) {
  const char32_t ch = box.ch == kUnknownCharacter ? 0 : box.ch;
  return {box.x0, box.x1, box.y0 - textTop, box.y1 - textTop, ch, box.doubtful};
}

bool IsBlank(char32_t ch) {
  return ch <= U' ';
}

std::string TextOfLine(const SubpictureUnit& unit, int line) {
  std::u32string text;
  for (const CharBox& box : unit.charBoxes) {
    if (box.line == line && box.ch != kLineEnd) text += box.ch;
  }
  return ToUtf8(text.substr(0, kMaxLineLength));
}

}  // namespace

std::optional<Lesson> MakeLesson(const SubpictureUnit& unit, BoxRange range, EnginePicture picture,
                                 const std::string& text) {
  const std::u32string characters = FromUtf8(text);
  const bool inUnit = unit.charBoxCount > 0 && range.first >= 0 && range.first <= range.last &&
                      range.last < static_cast<int>(unit.charBoxes.size());
  if (!inUnit || characters.empty() || std::any_of(characters.begin(), characters.end(), IsBlank)) {
    return std::nullopt;
  }
  Lesson lesson;
  const int textTop = unit.state.statistics.box.top;
  for (int i = range.first; i <= range.last; ++i) {
    const CharBox& box = unit.charBoxes[static_cast<std::size_t>(i)];
    if (IsBlank(box.ch)) return std::nullopt;
    lesson.boxes.push_back(ToEngineBox(box, textTop));
    lesson.refRow = box.lineRefRow - textTop;
    lesson.slant = box.lineSlant;
  }
  lesson.picture = std::move(picture);
  lesson.text = text;
  return lesson;
}

std::optional<BoxRange> FindBoxes(const SubpictureUnit& unit, int line, int x0, int x1) {
  std::optional<BoxRange> found;
  for (int i = 0; i < static_cast<int>(unit.charBoxes.size()); ++i) {
    const CharBox& box = unit.charBoxes[static_cast<std::size_t>(i)];
    const int middle = (box.x0 + box.x1) / 2;
    if (box.line != line || IsBlank(box.ch) || middle < x0 || middle > x1) continue;
    found = BoxRange{found ? found->first : i, i};
  }
  return found;
}

void CorrectBoxes(SubpictureUnit& unit, BoxRange range, const std::string& text) {
  const std::u32string characters = FromUtf8(text);
  const auto first = unit.charBoxes.begin() + range.first;
  const auto end = unit.charBoxes.begin() + range.last + 1;
  const std::vector<CharBox> before(first, end);
  const int line = before.front().line;
  const int left = before.front().x0;
  const int width = before.back().x1 - left + 1;
  const int count = static_cast<int>(characters.size());
  std::vector<CharBox> after;
  for (int i = 0; i < count; ++i) {
    const auto index = static_cast<std::size_t>(i);
    const bool oneForEach = characters.size() == before.size();
    CharBox box = oneForEach ? before[index] : before.front();
    if (!oneForEach) {
      box.x0 = left + width * i / count;
      box.x1 = left + width * (i + 1) / count - 1;
      for (const CharBox& each : before) {
        box.y0 = std::min(box.y0, each.y0);
        box.y1 = std::max(box.y1, each.y1);
      }
    }
    box.ch = characters[index];
    box.doubtful = false;
    after.push_back(box);
  }
  unit.charBoxes.insert(unit.charBoxes.erase(first, end), after.begin(), after.end());
  unit.charBoxCount = static_cast<int>(unit.charBoxes.size());
  const auto at = static_cast<std::size_t>(line);
  if (at < unit.ocrText.size()) unit.ocrText[at] = TextOfLine(unit, line);
}

}  // namespace quillomar
