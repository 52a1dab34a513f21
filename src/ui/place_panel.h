#pragma once

#include <QGroupBox>
#include <QList>

#include "editor/view.h"

class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QPushButton;
class QSlider;
class QSpinBox;
class QToolButton;

namespace quillomar {

class Editor;

// Where the subpicture stands: moves, borders, and the crop of its background.
class PlacePanel final : public QGroupBox {
  Q_OBJECT

 public:
  explicit PlacePanel(Editor& editor, QWidget* parent = nullptr);

  // Shows a snapshot; while a job runs nothing can be changed.
  void Show(const View& view, bool busy);

 private:
  [[nodiscard]] QHBoxLayout* MakeVertical();
  [[nodiscard]] QHBoxLayout* MakeHorizontal();
  void AddBorder(QGridLayout& layout);
  void AddPresets(QGridLayout& layout);
  void ShowBorder(const PlaceView& place, bool changeable);
  // Lines of one vertical step.
  [[nodiscard]] int Step() const;

  Editor& editor_;
  QSpinBox* up_;
  QSpinBox* right_;
  QPushButton* flush_;
  QPushButton* crop_;
  QSlider* borderSlider_;
  QSpinBox* border_;
  QComboBox* presets_;
  QList<QWidget*> vertical_;    // controls that move up and down
  QList<QWidget*> horizontal_;  // left and right
};

}  // namespace quillomar
