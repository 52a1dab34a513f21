#pragma once

#include <QFrame>
#include <array>

#include "dvd/clut.h"

namespace quillomar {

class SwatchButton;

// The sixteen entries of a colour table as a grid to choose from. Arrow keys walk, Return chooses,
// Esc closes.
class ClutPopup final : public QFrame {
  Q_OBJECT

 public:
  explicit ClutPopup(QWidget* parent = nullptr);

  // Opens below a widget, or above where the screen ends, with one entry (0 to 15) focused.
  void OpenAt(const QWidget& anchor, const RgbClut& clut, int current);

 signals:
  void Chosen(int entry);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool MoveFocus(int from, int key);

  std::array<SwatchButton*, kClutSize> entries_{};
};

}  // namespace quillomar
