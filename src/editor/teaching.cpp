#include "editor/teaching.h"

#include <algorithm>
#include <numeric>

#include "base/format.h"
#include "editor/document.h"
#include "editor/ocr_desk.h"

namespace quillomar {
namespace {

struct Appearances {
  UnitList units;  // that hold the glyph
  int others = 0;  // places besides the one corrected
};

Appearances FindAppearances(const Lesson& lesson, const UnitList& all, const OcrTools& tools) {
  TextPictures pictures;
  UnitList pictured;
  // Looking at the units once more must not change what is remembered of the last one.
  int remembered = tools.rememberedTextType;
  const OcrTools looking{tools.engine, tools.settings, remembered, tools.languageOf, tools.context};
  for (const UnitPointer& unit : all) {
    auto picture = TakeTextPicture(Document::Unrecorded(unit), looking);
    if (!picture) continue;
    pictures.Add(std::move(*picture));
    pictured.push_back(unit);
  }
  const std::vector<int> counts = tools.engine.CountAppearances(lesson, pictures, tools.settings);
  Appearances found;
  for (std::size_t i = 0; i < std::min(counts.size(), pictured.size()); ++i) {
    if (counts[i] > 0) found.units.push_back(pictured[i]);
  }
  found.others = std::max(std::accumulate(counts.begin(), counts.end(), 0) - 1, 0);
  return found;
}

std::string QuestionAbout(const Appearances& found, const std::string& text) {
  return Format(
      "The same glyph stands in %d other place(s) of %d subpic(s) read so far.\n"
      "Do you want to read all of them as \"%s\"?",
      found.others, static_cast<int>(found.units.size()), text.c_str());
}

// An engine that weighs the lesson against the rest of the line may still see it otherwise.
void Insist(SubpictureUnit& unit, const CharBox& first, const CharBox& last,
            const std::string& text) {
  if (unit.charBoxCount <= 0) return;
  if (const auto range = FindBoxes(unit, first.line, first.x0, last.x1)) {
    CorrectBoxes(unit, *range, text);
  }
}

}  // namespace

void TeachGlyph(const UnitPointer& corrected, BoxRange range, const Lesson& lesson,
                const UnitList& all, const OcrTools& tools, EditHistory& history,
                JobControl& control) {
  Appearances found = FindAppearances(lesson, all, tools);
  const bool follow =
      found.others == 0 || tools.context.reporter.AskYesNo(QuestionAbout(found, lesson.text));
  SubpictureUnit& unit = history.Open(corrected);
  if (!follow) {
    CorrectBoxes(unit, range, lesson.text);
    return;
  }
  const CharBox first = unit.charBoxes[static_cast<std::size_t>(range.first)];
  const CharBox last = unit.charBoxes[static_cast<std::size_t>(range.last)];
  (void)tools.engine.Teach(lesson);
  if (std::find(found.units.begin(), found.units.end(), corrected) == found.units.end()) {
    found.units.push_back(corrected);
  }
  std::vector<SubpictureUnit*> reread;
  for (const UnitPointer& each : found.units) reread.push_back(&history.Open(each));
  RunOcrOnAll(reread, tools, ProgressOf(control, reread.size()));
  Insist(unit, first, last, lesson.text);
}

}  // namespace quillomar
