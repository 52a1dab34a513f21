// Which button of a menu is shown highlighted.

#include "editor/editor.h"

namespace quillomar {

void Editor::ShowButton(int button) {
  if (button < 0 || button >= view_.buttonCount) return;
  look_.button = button;
  if (look_.buttonLook == ButtonLook::kNone) look_.buttonLook = ButtonLook::kSelected;
  UpdateView();
}

void Editor::PreviousButton() {
  ShowButton(look_.button == 0 ? view_.buttonCount - 1 : look_.button - 1);
}

void Editor::NextButton() {
  ShowButton(look_.button + 1 < view_.buttonCount ? look_.button + 1 : 0);
}

void Editor::SwitchHighlight() {
  look_.buttonLook =
      look_.buttonLook == ButtonLook::kSelected ? ButtonLook::kActivated : ButtonLook::kSelected;
  UpdateView();
}

void Editor::IgnoreTransparency(bool on) {
  look_.ignoreTransparency = on;
  UpdateView();
}

}  // namespace quillomar
