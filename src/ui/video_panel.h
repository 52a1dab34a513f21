#pragma once

#include <QWidget>

#include "editor/view.h"

class QCheckBox;
class QComboBox;
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
  [[nodiscard]] QToolButton* MakeToggle(const QString& text);
  void NameControls();
  void ConnectControls();
  void ShowAudio(const VideoView& video);

  Editor& editor_;
  QCheckBox* shown_;
  QToolButton* endFrame_;
  QToolButton* play_;
  QToolButton* loop_;
  QComboBox* audio_;
};

}  // namespace quillomar
