#pragma once

#include <QColor>

#include "editor/text_view.h"

namespace quillomar {

// How characters that want a look are shown, in the text as over the picture.
[[nodiscard]] inline bool IsMarked(const TextCharacter& character) {
  return character.unknown || character.doubtful;
}

[[nodiscard]] inline QColor MarkColour(const TextCharacter& character) {
  return character.unknown ? QColor(225, 45, 45) : QColor(235, 140, 0);
}

}  // namespace quillomar
