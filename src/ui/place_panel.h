#pragma once

#include <QGroupBox>
#include <functional>

#include "editor/view.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QPushButton;
class QSlider;
class QSpinBox;

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
  // A slider and a number for the same move.
  void ConnectMove(QSlider& slider, QSpinBox& number, const std::function<void(int)>& move);
  void AddVertical(QGridLayout& layout);
  void AddHorizontal(QGridLayout& layout);
  void AddFlushAndCrop(QGridLayout& layout);
  void AddBorder(QGridLayout& layout);
  void AddPresets(QGridLayout& layout);
  void ShowBorder(const PlaceView& place, bool changeable);
  // Lines of one vertical step.
  [[nodiscard]] int Step() const;

  Editor& editor_;
  QSlider* upSlider_;
  QSpinBox* up_;
  QSlider* rightSlider_;
  QSpinBox* right_;
  QCheckBox* flush_;
  QPushButton* crop_;
  QSlider* borderSlider_;
  QSpinBox* border_;
  QComboBox* presets_;
};

}  // namespace quillomar
