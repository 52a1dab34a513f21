#pragma once

#include <QWidget>

#include "editor/view.h"

class QLabel;
class QSlider;
class QSpinBox;
class QToolButton;

namespace quillomar {

class Editor;

// Picks one subpicture of the list: slider, number box, previous and next.
class ListNavigator final : public QWidget {
  Q_OBJECT

 public:
  explicit ListNavigator(Editor& editor, QWidget* parent = nullptr);

  void Show(const View& view);
  // The keyboard goes to the slider.
  void TakeFocus();

 private:
  void NameControls();
  void GoTo(int index);

  Editor& editor_;
  QToolButton* previous_;
  QSlider* slider_;
  QToolButton* next_;
  QSpinBox* number_;
  QLabel* count_;
};

}  // namespace quillomar
