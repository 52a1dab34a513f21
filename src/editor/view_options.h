#pragma once

#include <optional>

namespace quillomar {

// What of a menu button is shown: nothing special, the look of the selected button, or that of the
// one being pressed.
enum class ButtonLook { kNone, kSelected, kActivated };

// How the user wants the current unit shown; belongs to no unit and is never saved.
struct ViewOptions {
  std::optional<int> onlyType = {};  // pixel type shown alone, 0 to 3
  bool automaticClut = false;        // its own colours in place of the IFO's
  bool ignoreTransparency = false;   // all types but the background are opaque
  ButtonLook buttonLook = ButtonLook::kNone;
  int button = 0;          // from 0
  bool savedText = false;  // the recognised text as it was before anything was erased
};

}  // namespace quillomar
