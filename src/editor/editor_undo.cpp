// Taking edits back and doing them again.

#include <algorithm>

#include "editor/editor.h"

namespace quillomar {

SubpictureUnit& Editor::OpenCurrent(const char* name) {
  document_.History().Begin(name, last_);
  return document_.History().Open(selection_.Current());
}

std::string Editor::MenuText(const Command& command) const {
  std::string text(command.text);
  if (!Enabled(command)) return text;
  const EditHistory& history = document_.History();
  const EditStep* const step = command.id == CommandId::kUndo   ? history.ToUndo()
                               : command.id == CommandId::kRedo ? history.ToRedo()
                                                                : nullptr;
  if (step != nullptr) text.insert(text.find('\t'), step->Label() + " ");
  return text;
}

void Editor::Undo() {
  ShowStep(document_.History().Undo(last_));
}

void Editor::Redo() {
  ShowStep(document_.History().Redo(last_));
}

// The user sees what has happened where it happened to one subpicture alone.
void Editor::ShowStep(const EditStep* step) {
  selection_.Refill(document_.Units());
  if (step != nullptr && step->units.size() == 1) {
    const UnitList& list = selection_.List();
    const UnitPointer unit = step->units.front().unit;
    const auto place = std::find(list.begin(), list.end(), unit);
    if (place != list.end()) (void)selection_.SetIndex(static_cast<int>(place - list.begin()));
  }
  UpdateView();
}

}  // namespace quillomar
