#pragma once

class QWidget;

namespace quillomar {

// Which commands' keys a control keeps to itself while it has the focus.
enum class KeptKeys {
  kNone,
  kSteps,   // the left and the right arrow
  kMoving,  // those that move the cursor where text is written: Space, Home, End, arrows
  kText,    // as kMoving; and the keys that erase recognised text are its commands' keys
  kAll,
};

void KeepKeys(QWidget& control, KeptKeys kept);

// Boxes that take free text keep all keys unless KeepKeys said otherwise.
[[nodiscard]] KeptKeys KeysKeptBy(const QWidget* control);

}  // namespace quillomar
