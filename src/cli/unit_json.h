#pragma once

#include <string>

#include "editor/document.h"

namespace quillomar {

// One subpicture as a JSON object, as `list --json` prints it.
[[nodiscard]] std::string UnitJson(Document& document, SubpictureUnit& unit);

// One subpicture as one line of text.
[[nodiscard]] std::string UnitLine(const Document& document, const SubpictureUnit& unit);

// The disc as `disc --json` prints it, and as lines of text.
[[nodiscard]] std::string DiscJson(Document& document);
[[nodiscard]] std::string DiscText(Document& document);

// "#rrggbb"
[[nodiscard]] std::string ColourText(Rgb colour);

}  // namespace quillomar
