#include "ui/place_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include "dvd/video_standard.h"
#include "editor/editor.h"
#include "settings/preferences.h"
#include "ui/control_names.h"
#include "ui/number_box.h"

namespace quillomar {
namespace {

// Sliders for moves; their middle is where the subpicture was found.
constexpr int kVerticalSteps = 1200;
constexpr int kHorizontalSteps = 1000;
constexpr int kMostPixels = kPictureWidth;
constexpr int kHighestBorder = 120;
constexpr int kPage = 10;
constexpr const char* kVerticalTip = "Moves the subpic currently displayed up and down";
constexpr const char* kHorizontalTip =
    "Moves subpic left or right. If disabled, crop the background (button below).";
constexpr const char* kBorderTip =
    "Adjusts the vertical margin between subtitles and image borders. Only available if there are "
    "no buttons";

enum Row { kVerticalRow, kHorizontalRow, kCropRow, kBorderRow, kPresetRow };
enum Column { kLabelColumn, kSliderColumn, kNumberColumn, kColumns };

// The presets in their order, then what matches none.
const QStringList& PresetNames() {
  static const QStringList names = {
      "No Vertical Borders",    "4:3 S", "4:3 LB", "4:3 LBS", "1.85:1", "2.39:1",
      "Custom Vertical Borders"};
  return names;
}
constexpr int kCustom = kBorderPresets + 1;

void AddRow(QGridLayout& layout, Row row, const QString& text, QSlider& slider, QSpinBox& number) {
  auto* const label = new QLabel(text, number.parentWidget());
  label->setBuddy(&number);
  layout.addWidget(label, row, kLabelColumn);
  layout.addWidget(&slider, row, kSliderColumn);
  layout.addWidget(&number, row, kNumberColumn);
}

void ShowMove(QSlider& slider, QSpinBox& number, int move) {
  const QSignalBlocker blocker(&slider);
  slider.setValue(move + slider.maximum() / 2);
  ShowNumber(number, move);
}

}  // namespace

PlacePanel::PlacePanel(Editor& editor, QWidget* parent)
    : QGroupBox("Position and borders", parent),
      editor_(editor),
      upSlider_(new QSlider(Qt::Horizontal, this)),
      up_(MakeNumberBox(-kVerticalSteps / 2, kVerticalSteps / 2, this)),
      rightSlider_(new QSlider(Qt::Horizontal, this)),
      right_(MakeNumberBox(-kMostPixels, kMostPixels, this)),
      flush_(new QCheckBox("Flush to border", this)),
      crop_(new QPushButton("Crop bac&kground", this)),
      borderSlider_(new QSlider(Qt::Horizontal, this)),
      border_(MakeNumberBox(0, kHighestBorder, this)),
      presets_(new QComboBox(this)) {
  setObjectName("placePanel");
  auto* const layout = new QGridLayout(this);
  layout->setColumnStretch(kSliderColumn, 1);
  AddVertical(*layout);
  AddHorizontal(*layout);
  AddFlushAndCrop(*layout);
  AddBorder(*layout);
  AddPresets(*layout);
  OrderTabs(
      {upSlider_, up_, rightSlider_, right_, flush_, crop_, borderSlider_, border_, presets_});
}

int PlacePanel::Step() const {
  return editor_.Context().preferences.forceEvenMoves != 0 ? 2 : 1;
}

void PlacePanel::ConnectMove(QSlider& slider, QSpinBox& number,
                             const std::function<void(int)>& move) {
  connect(&slider, &QSlider::valueChanged, this,
          [&slider, move](int value) { move(value - slider.maximum() / 2); });
  connect(&number, &QSpinBox::valueChanged, this, move);
}

void PlacePanel::AddVertical(QGridLayout& layout) {
  upSlider_->setRange(0, kVerticalSteps);
  upSlider_->setPageStep(kPage);
  NameControl(*upSlider_, "linesUpSlider", "Lines up, from 600 lines below where it was found",
              kVerticalTip);
  NameControl(*up_, "linesUp", "Lines up", "Enter amount to move the subpic here.");
  ConnectMove(*upSlider_, *up_, [this](int lines) { editor_.MoveVertically(lines); });
  AddRow(layout, kVerticalRow, "&Up:", *upSlider_, *up_);
}

void PlacePanel::AddHorizontal(QGridLayout& layout) {
  rightSlider_->setRange(0, kHorizontalSteps);
  rightSlider_->setPageStep(kPage);
  NameControl(*rightSlider_, "pixelsRightSlider",
              "Pixels right, from 500 pixels left of where it was found", kHorizontalTip);
  NameControl(*right_, "pixelsRight", "Pixels right", kHorizontalTip);
  ConnectMove(*rightSlider_, *right_, [this](int pixels) { editor_.MoveHorizontally(pixels); });
  AddRow(layout, kHorizontalRow, "Ri&ght:", *rightSlider_, *right_);
}

void PlacePanel::AddFlushAndCrop(QGridLayout& layout) {
  NameControl(*flush_, "flush", "Flush to border",
              "Moves subpic flush with the nearest border, if borders are used");
  NameControl(*crop_, "cropButton", "Crop background",
              "Crop subpic background to allow adjustment of horizontal position in all cases.");
  connect(flush_, &QCheckBox::toggled, this, [this](bool on) { editor_.FlushToBorder(on); });
  connect(crop_, &QPushButton::clicked, this, [this] { editor_.Run(CommandId::kCrop); });
  auto* const row = new QHBoxLayout;
  row->addWidget(flush_);
  row->addWidget(crop_, 1);
  layout.addLayout(row, kCropRow, kLabelColumn, 1, kColumns);
}

// A border that is too high is refused with a message, so dragging applies it only at its end.
void PlacePanel::AddBorder(QGridLayout& layout) {
  borderSlider_->setRange(0, kHighestBorder);
  borderSlider_->setPageStep(kPage);
  borderSlider_->setTracking(false);
  NameControl(*borderSlider_, "borderSlider", "Border", kBorderTip);
  NameControl(*border_, "border", "Border in lines", kBorderTip);
  connect(borderSlider_, &QSlider::sliderMoved, this,
          [this](int lines) { ShowNumber(*border_, lines); });
  connect(borderSlider_, &QSlider::valueChanged, this,
          [this](int lines) { editor_.SetBorder(lines); });
  connect(border_, &QSpinBox::valueChanged, this, [this](int lines) { editor_.SetBorder(lines); });
  AddRow(layout, kBorderRow, "&Border:", *borderSlider_, *border_);
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
  layout.addWidget(presets_, kPresetRow, kLabelColumn, 1, kColumns);
}

void PlacePanel::Show(const View& view, bool busy) {
  const bool changeable = view.canEdit && !busy;
  const PlaceView& place = view.place;
  ShowMove(*upSlider_, *up_, place.up);
  ShowMove(*rightSlider_, *right_, place.right);
  up_->setSingleStep(Step());
  upSlider_->setSingleStep(Step());
  up_->setEnabled(changeable);
  upSlider_->setEnabled(changeable);
  right_->setEnabled(changeable && place.canMoveRight);
  rightSlider_->setEnabled(changeable && place.canMoveRight);
  crop_->setEnabled(changeable);
  ShowBorder(view.hasUnit ? place : PlaceView{.borderPreset = 0}, changeable);
}

void PlacePanel::ShowBorder(const PlaceView& place, bool changeable) {
  const QSignalBlocker sliderBlocker(borderSlider_);
  const QSignalBlocker presetBlocker(presets_);
  const QSignalBlocker flushBlocker(flush_);
  const bool bordered = changeable && place.canHaveBorder;
  borderSlider_->setValue(place.border);
  ShowNumber(*border_, place.border);
  presets_->setCurrentIndex(place.borderPreset.value_or(kCustom));
  flush_->setChecked(place.flush);
  for (QWidget* const control :
       std::initializer_list<QWidget*>{borderSlider_, border_, presets_, flush_}) {
    control->setEnabled(bordered);
  }
}

}  // namespace quillomar
