#pragma once

#include <QWidget>

#include "editor/view.h"

class QCheckBox;
class QHBoxLayout;
class QToolButton;

namespace quillomar {

class Editor;

// Controls of the video behind the subpictures.
class VideoPanel final : public QWidget {
  Q_OBJECT

 public:
  explicit VideoPanel(Editor& editor, QWidget* parent = nullptr);

  // Shows a snapshot; while a job runs nothing can be changed.
  void Show(const VideoView& video, bool busy);

 private:
  Editor& editor_;
  QCheckBox* shown_;
  QToolButton* endFrame_;
};

}  // namespace quillomar
