#pragma once

#include <QComboBox>

#include "editor/view.h"

namespace quillomar {

class Editor;

// Chooses the screen on which the video is shown.
class ScreenModeChooser final : public QComboBox {
  Q_OBJECT

 public:
  ScreenModeChooser(Editor& editor, QWidget* parent);

  void Show(const View& view);
};

}  // namespace quillomar
