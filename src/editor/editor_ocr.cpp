// Reading the text of subpictures, correcting it and erasing parts of it.

#include <algorithm>

#include "base/format.h"
#include "editor/editor.h"
#include "editor/teaching.h"

namespace quillomar {
namespace {

constexpr const char* kHideName = "hearing impaired text";

std::vector<SubpictureUnit*> Pointers(const UnitList& units) {
  std::vector<SubpictureUnit*> pointers;
  for (const UnitPointer& unit : units) pointers.push_back(&Document::Unrecorded(unit));
  return pointers;
}

}  // namespace

void Editor::OcrCurrent() {
  if (!UnitMayBeEdited() || !ocr_.Ready()) return;
  RunOcr(Document::Unrecorded(selection_.Current()), ocr_.Tools(document_.Context()));
  RefillList();
}

void Editor::OcrSelected() {
  OcrUnits(selection_.List());
}

void Editor::OcrUnits(const UnitList& units) {
  if (busy_ || units.empty() || !ocr_.Ready()) return;
  auto work = [this, units, tools = ocr_.Tools(document_.Context())] {
    RunOcrOnAll(Pointers(units), tools, ProgressOf(session_.job, units.size()));
  };
  StartJob(Operation::kOcr, "Running OCR", std::move(work), {});
}

void Editor::HideHearingImpaired() {
  if (!UnitMayBeEdited() || !ocr_.Ready()) return;
  (void)EraseHearingImpaired(OpenCurrent(kHideName), ocr_.Hearing(),
                             ocr_.Tools(document_.Context()));
  RefillList();
}

void Editor::HideHearingImpairedAll() {
  HideHearingImpairedIn(selection_.List());
}

// Units not read yet are read in one run, which is quicker and reads better than one by one.
void Editor::HideHearingImpairedIn(const UnitList& units) {
  if (busy_ || units.empty() || !ocr_.Ready()) return;
  auto work = [this, units, options = ocr_.Hearing(), last = last_,
               tools = ocr_.Tools(document_.Context())] {
    std::vector<SubpictureUnit*> unread = Pointers(units);
    std::erase_if(unread, [](const SubpictureUnit* unit) { return unit->charBoxCount > 0; });
    RunOcrOnAll(unread, tools, ProgressOf(session_.job, unread.size()));
    document_.History().Begin(kHideName, last);
    const EngineProgress progress = ProgressOf(session_.job, units.size());
    for (std::size_t i = 0; i < units.size() && progress(i, units.size()); ++i) {
      SubpictureUnit& unit = document_.History().Open(units[i]);
      if (Failed(EraseHearingImpaired(unit, options, tools))) ++refused_;
      unit.ReleasePixels();
    }
  };
  StartJob(Operation::kErasingHearingImpaired, "Erasing Hearing-Impaired subpics", std::move(work),
           {});
}

void Editor::EraseText() {
  if (!UnitMayBeEdited() || !selectedText_ || !ocr_.Ready()) return;
  if (selection_.Current()->charBoxCount <= 0) return;
  (void)EraseSelection(OpenCurrent("erased text"), *selectedText_, ocr_.Cut(),
                       ocr_.Tools(document_.Context()));
  RefillList();
}

void Editor::CorrectText(const std::string& text) {
  if (!UnitMayBeEdited() || !ocr_.Ready()) return;
  const UnitPointer corrected = selection_.Current();
  SubpictureUnit& unit = Document::Unrecorded(corrected);
  const OcrTools tools = ocr_.Tools(document_.Context());
  const auto picture = selectedText_ ? TakeTextPicture(unit, tools) : std::nullopt;
  auto lesson = picture ? MakeLesson(unit, *selectedText_, picture->Unpack(), text) : std::nullopt;
  if (!lesson) {
    session_.reporter.ReportError(
        "Select characters of one word in the recognised text,\n"
        "and type what they should be, without blanks.");
    return;
  }
  UnitList read = document_.Units();
  std::erase_if(read, [](const UnitPointer& each) { return each->charBoxCount == 0; });
  auto work = [this, corrected, read, tools, last = last_, range = *selectedText_,
               lesson = std::move(*lesson)] {
    document_.History().Begin("correction", last);
    TeachGlyph(corrected, range, lesson, read, tools, document_.History(), session_.job);
  };
  StartJob(Operation::kOcr, "Running OCR", std::move(work), {});
}

void Editor::ShowSavedText(bool on) {
  look_.savedText = on;
  UpdateView();
}

// From behind the selected text on through the list, and once from its beginning.
void Editor::NextDoubtful() {
  const int count = selection_.Count();
  for (int step = 0; step <= count; ++step) {
    const int index = (selection_.Index() + step) % count;
    const int after = step == 0 && selectedText_ ? selectedText_->last : -1;
    const auto box = NextDoubtfulBox(*selection_.List()[static_cast<std::size_t>(index)], after);
    if (!box) continue;
    (void)selection_.SetIndex(index);
    look_.savedText = false;
    UpdateView();
    ChooseText({*box, *box});
    return;
  }
  frontEnd_.Beep();
}

void Editor::ChooseText(BoxRange range) {
  selectedText_ = range;
  view_.text.chosen = range;
  frontEnd_.Refresh();
}

}  // namespace quillomar
