#pragma once

#include <QGroupBox>
#include <array>

#include "editor/view.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QSlider;
class QToolButton;

namespace quillomar {

class ClutPopup;
class Editor;
class SwatchButton;

// Colours of the four pixel types, where they come from, and their transparency.
class LookPanel final : public QGroupBox {
  Q_OBJECT

 public:
  explicit LookPanel(Editor& editor, QWidget* parent = nullptr);

  // Shows a snapshot; while a job runs nothing can be changed.
  void Show(const View& view, bool busy);

 private:
  void AddPixelType(QGridLayout& layout, int type);
  void AddTransparency(QGridLayout& layout);
  void AddClutChoice(QGridLayout& layout);
  void AddOpaque(QGridLayout& layout);
  void ShowPixelType(const View& view, std::size_t type);
  void ShowTransparency(const View& view);
  void PickColour(int type, bool edit);
  void ChangeTransparency(int alpha);

  Editor& editor_;
  bool changeable_ = false;
  std::array<QToolButton*, kPixelTypes> letters_{};
  std::array<SwatchButton*, kPixelTypes> swatches_{};
  QComboBox* pixels_;
  QSlider* slider_;
  QLabel* value_;
  QComboBox* cluts_;
  QCheckBox* opaque_;
  ClutPopup* popup_;
  int pickedType_ = 0;  // whose colour the popup chooses
};

}  // namespace quillomar
