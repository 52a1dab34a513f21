// Where the current unit stands on the frame, and when it is shown.

#include "editor/editor.h"
#include "settings/preferences.h"
#include "spu/duration.h"

namespace quillomar {

// The one who edits sees why: messages of the edit itself, else the reason it gives.
void Editor::EditCurrent(const UnitEdits& edits) {
  if (!UnitMayBeEdited()) return;
  std::string refusal;
  SubpictureUnit& unit = OpenCurrent(NameOf(edits));
  if (!Failed(ApplyEdits(unit, edits, session_.preferences, document_.Context(), refusal))) {
    Remember(last_, edits, unit);
  }
  UpdateView();
}

void Editor::MoveVertically(int linesUp) {
  EditCurrent({.moveUp = linesUp});
}

void Editor::MoveHorizontally(int pixelsRight) {
  EditCurrent({.moveRight = pixelsRight});
}

void Editor::SetBorder(int lines) {
  EditCurrent({.border = lines, .flush = lines > 0 && last_.flushToBorder});
}

void Editor::ChooseBorderPreset(int preset) {
  SetBorder(
      BorderHeight(session_.preferences, preset, document_.Standard() == VideoStandard::kNtsc));
}

void Editor::FlushToBorder(bool on) {
  if (!UnitMayBeEdited()) return;
  if (on && selection_.Current()->state.border > 0) EditCurrent({.flush = true});
  last_.flushToBorder = on;
  UpdateView();
}

void Editor::CropCurrent() {
  EditCurrent({.crop = true});
}

void Editor::HideCurrent() {
  EditCurrent({.hide = true});
}

void Editor::SetDuration(int ms) {
  // A unit without a stop is asked about, and playback would end the step meanwhile.
  const UnitPointer unit = selection_.Current();
  if (unit && !HasTimedStop(*unit)) video_.EndPlayback();
  EditCurrent({.durationMs = ms});
}

void Editor::MakeInfinite() {
  EditCurrent({.end = EndEdit::kInfinite});
}

void Editor::SetForced(bool forced) {
  EditCurrent({.forcedStart = forced});
}

void Editor::AddFade() {
  EditCurrent({.fade = FadeEdit::kAdd});
}

void Editor::RemoveFade() {
  EditCurrent({.fade = FadeEdit::kRemove});
}

void Editor::UseAutomaticClut(bool automatic) {
  look_.automaticClut = automatic;
  UpdateView();
}

}  // namespace quillomar
