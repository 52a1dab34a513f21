#pragma once

#include <QGroupBox>

#include "editor/view.h"

class QComboBox;
class QGridLayout;
class QPushButton;
class QSlider;
class QSpinBox;

namespace quillomar {

class Editor;

// How the subpicture comes and goes: duration, start command, fade, hiding.
class TimePanel final : public QGroupBox {
  Q_OBJECT

 public:
  explicit TimePanel(Editor& editor, QWidget* parent = nullptr);

  // Shows a snapshot; while a job runs nothing can be changed.
  void Show(const View& view, bool busy);

 private:
  void AddDuration(QGridLayout& layout);
  void AddStart(QGridLayout& layout);
  void AddEffects(QGridLayout& layout);
  void AddRetiming(QGridLayout& layout);
  void ShowDuration(const TimeView& time, bool changeable);

  Editor& editor_;
  QSpinBox* duration_;
  QSlider* durationSlider_;
  QPushButton* infinite_;
  QComboBox* start_;
  QPushButton* addFade_;
  QPushButton* removeFade_;
  QPushButton* hide_;
  QPushButton* retime_;
  QPushButton* retimeAll_;
};

}  // namespace quillomar
