#include "ui/place_panel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

#include "dvd/video_standard.h"
#include "editor/editor.h"
#include "settings/preferences.h"
#include "ui/control_names.h"
#include "ui/number_box.h"
#include "ui/step_button.h"

namespace quillomar {
namespace {

constexpr int kMostLines = 600;
constexpr int kMostPixels = kPictureWidth;
constexpr int kHighestBorder = 120;
constexpr const char* kVerticalTip = "Moves the subpic currently displayed up and down";
constexpr const char* kHorizontalTip =
    "Moves subpic left or right. If disabled, crop the background (button below).";
constexpr const char* kBorderTip =
    "Adjusts the vertical margin between subtitles and image borders. Only available if there are "
    "no buttons";

// The presets in their order, then what matches none.
const QStringList& PresetNames() {
  static const QStringList names = {
      "No Vertical Borders",    "4:3 S", "4:3 LB", "4:3 LBS", "1.85:1", "2.39:1",
      "Custom Vertical Borders"};
  return names;
}
constexpr int kCustom = kBorderPresets + 1;

QLabel* MakeLabel(const QString& text, QWidget& buddy) {
  auto* const label = new QLabel(text, buddy.parentWidget());
  label->setBuddy(&buddy);
  return label;
}

QHBoxLayout* InRow(std::initializer_list<QWidget*> widgets) {
  auto* const row = new QHBoxLayout;
  for (QWidget* const widget : widgets) row->addWidget(widget);
  return row;
}

}  // namespace

PlacePanel::PlacePanel(Editor& editor, QWidget* parent)
    : QGroupBox("Position and borders", parent),
      editor_(editor),
      up_(MakeNumberBox(-kMostLines, kMostLines, false, this)),
      right_(MakeNumberBox(-kMostPixels, kMostPixels, false, this)),
      flush_(new QPushButton("Flush to border", this)),
      crop_(new QPushButton("Crop bac&kground", this)),
      borderSlider_(new QSlider(Qt::Horizontal, this)),
      border_(MakeNumberBox(0, kHighestBorder, true, this)),
      presets_(new QComboBox(this)) {
  setObjectName("placePanel");
  NameControl(*flush_, "flush", "Flush to border",
              "Moves subpic flush with the nearest border, if borders are used");
  NameControl(*crop_, "cropButton", "Crop background",
              "Crop subpic background to allow adjustment of horizontal position in all cases.");
  connect(flush_, &QPushButton::clicked, this, [this] { editor_.FlushToBorder(); });
  connect(crop_, &QPushButton::clicked, this, [this] { editor_.Run(CommandId::kCrop); });
  auto* const layout = new QGridLayout(this);
  layout->addLayout(MakeVertical(), 0, 0);
  layout->addLayout(MakeHorizontal(), 0, 1);
  layout->addWidget(flush_, 1, 0);
  layout->addWidget(crop_, 1, 1);
  AddBorder(*layout);
  AddPresets(*layout);
  OrderTabs(vertical_ + horizontal_ +
            QList<QWidget*>{flush_, crop_, borderSlider_, border_, presets_});
}

int PlacePanel::Step() const {
  return editor_.Context().preferences.forceEvenMoves != 0 ? 2 : 1;
}

QHBoxLayout* PlacePanel::MakeVertical() {
  auto* const higher = MakeStepButton(Qt::UpArrow, "moveUp", "Move up", kVerticalTip, this);
  auto* const lower = MakeStepButton(Qt::DownArrow, "moveDown", "Move down", kVerticalTip, this);
  NameControl(*up_, "linesUp", "Lines up", "Enter amount to move the subpic here.");
  connect(higher, &QToolButton::clicked, this, [this] { up_->setValue(up_->value() + Step()); });
  connect(lower, &QToolButton::clicked, this, [this] { up_->setValue(up_->value() - Step()); });
  connect(up_, &QSpinBox::valueChanged, this, [this](int lines) { editor_.MoveVertically(lines); });
  vertical_ = {higher, lower, up_};
  return InRow({MakeLabel("&Up:", *up_), higher, lower, up_});
}

QHBoxLayout* PlacePanel::MakeHorizontal() {
  auto* const left = MakeStepButton(Qt::LeftArrow, "moveLeft", "Move left", kHorizontalTip, this);
  auto* const right =
      MakeStepButton(Qt::RightArrow, "moveRight", "Move right", kHorizontalTip, this);
  NameControl(*right_, "pixelsRight", "Pixels right", kHorizontalTip);
  connect(left, &QToolButton::clicked, this, [this] { right_->setValue(right_->value() - 1); });
  connect(right, &QToolButton::clicked, this, [this] { right_->setValue(right_->value() + 1); });
  connect(right_, &QSpinBox::valueChanged, this,
          [this](int pixels) { editor_.MoveHorizontally(pixels); });
  horizontal_ = {left, right, right_};
  return InRow({MakeLabel("Ri&ght:", *right_), left, right, right_});
}

// A border that is too high is refused with a message, so dragging applies it only at its end.
void PlacePanel::AddBorder(QGridLayout& layout) {
  borderSlider_->setRange(0, kHighestBorder);
  borderSlider_->setPageStep(10);
  borderSlider_->setTracking(false);
  NameControl(*borderSlider_, "borderSlider", "Border", kBorderTip);
  NameControl(*border_, "border", "Border in lines", kBorderTip);
  connect(borderSlider_, &QSlider::sliderMoved, this,
          [this](int lines) { ShowNumber(*border_, lines); });
  connect(borderSlider_, &QSlider::valueChanged, this,
          [this](int lines) { editor_.SetBorder(lines); });
  connect(border_, &QSpinBox::valueChanged, this, [this](int lines) { editor_.SetBorder(lines); });
  auto* const row = new QHBoxLayout;
  row->addWidget(MakeLabel("&Border:", *border_));
  row->addWidget(borderSlider_, 1);
  row->addWidget(border_);
  layout.addLayout(row, 2, 0, 1, 2);
}

void PlacePanel::AddPresets(QGridLayout& layout) {
  presets_->addItems(PresetNames());
  NameControl(*presets_, "borderPreset", "Standard borders",
              "Pick standard values for vertical borders. Only available if there are no buttons");
  // What stands for other heights is a state and cannot be chosen.
  connect(presets_, &QComboBox::activated, this, [this](int preset) {
    if (preset < kCustom) editor_.ChooseBorderPreset(preset);
    if (preset == kCustom) border_->setFocus();
    Show(editor_.CurrentView(), editor_.Busy());
  });
  layout.addWidget(presets_, 3, 0, 1, 2);
}

void PlacePanel::Show(const View& view, bool busy) {
  const bool changeable = view.canEdit && !busy;
  const PlaceView& place = view.place;
  ShowNumber(*up_, place.up);
  up_->setSingleStep(Step());
  ShowNumber(*right_, place.right);
  for (QWidget* const control : std::as_const(vertical_)) control->setEnabled(changeable);
  for (QWidget* const control : std::as_const(horizontal_))
    control->setEnabled(changeable && place.canMoveRight);
  crop_->setEnabled(changeable);
  ShowBorder(view.hasUnit ? place : PlaceView{.borderPreset = 0}, changeable);
}

void PlacePanel::ShowBorder(const PlaceView& place, bool changeable) {
  const QSignalBlocker sliderBlocker(borderSlider_);
  const QSignalBlocker presetBlocker(presets_);
  const bool bordered = changeable && place.canHaveBorder;
  borderSlider_->setValue(place.border);
  ShowNumber(*border_, place.border);
  presets_->setCurrentIndex(place.borderPreset.value_or(kCustom));
  borderSlider_->setEnabled(bordered);
  border_->setEnabled(bordered);
  presets_->setEnabled(bordered);
  flush_->setEnabled(bordered && place.border > 0);
}

}  // namespace quillomar
