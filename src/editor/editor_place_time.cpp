// Where the current unit stands on the frame, and when it is shown.

#include "editor/editor.h"
#include "settings/preferences.h"

namespace quillomar {

// The one who edits sees why: messages of the edit itself, else the reason it gives.
void Editor::EditCurrent(const UnitEdits& edits) {
  if (!UnitMayBeEdited()) return;
  std::string refusal;
  SubpictureUnit& unit = *selection_.Current();
  if (!Failed(ApplyEdits(unit, edits, session_.preferences, document_.Context(), refusal))) {
    Remember(last_, edits, unit);
  }
  UpdateView();
}

void Editor::MoveVertically(int linesUp) {
  UnitEdits edits;
  edits.moveUp = linesUp;
  EditCurrent(edits);
}

void Editor::MoveHorizontally(int pixelsRight) {
  UnitEdits edits;
  edits.moveRight = pixelsRight;
  EditCurrent(edits);
}

void Editor::SetBorder(int lines) {
  UnitEdits edits;
  edits.border = lines;
  EditCurrent(edits);
}

void Editor::ChooseBorderPreset(int preset) {
  SetBorder(BorderHeight(session_.preferences, preset, !IsPal(document_.Standard())));
}

void Editor::FlushToBorder() {
  UnitEdits edits;
  edits.flush = true;
  EditCurrent(edits);
}

void Editor::CropCurrent() {
  UnitEdits edits;
  edits.crop = true;
  EditCurrent(edits);
}

void Editor::HideCurrent() {
  UnitEdits edits;
  edits.hide = true;
  EditCurrent(edits);
}

void Editor::SetDuration(int ms) {
  UnitEdits edits;
  edits.durationMs = ms;
  EditCurrent(edits);
}

void Editor::MakeInfinite() {
  UnitEdits edits;
  edits.end = EndEdit::kInfinite;
  EditCurrent(edits);
}

void Editor::SetForced(bool forced) {
  UnitEdits edits;
  edits.forcedStart = forced;
  EditCurrent(edits);
}

void Editor::AddFade() {
  UnitEdits edits;
  edits.fade = FadeEdit::kAdd;
  EditCurrent(edits);
}

void Editor::RemoveFade() {
  UnitEdits edits;
  edits.fade = FadeEdit::kRemove;
  EditCurrent(edits);
}

void Editor::UseAutomaticClut(bool automatic) {
  automaticClut_ = automatic;
  UpdateView();
}

}  // namespace quillomar
