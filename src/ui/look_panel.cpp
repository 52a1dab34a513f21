#include "ui/look_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>

#include "editor/editor.h"
#include "ui/clut_popup.h"
#include "ui/control_names.h"
#include "ui/swatch_button.h"

namespace quillomar {
namespace {

enum Column { kLetterColumn, kSwatchColumn, kGapColumn, kLabelColumn, kChoiceColumn };
enum Row { kPixelsRow, kScaleRow, kSliderRow, kClutRow, kOpaqueRow };

constexpr int kGap = 4;
constexpr int kOpaque = 15;
// "All" of the pixel choice, as the transparency edit takes it; the pixel types follow it in the
// list.
constexpr int kAllButBackground = 4;

int WhichOf(int choice) {
  return choice == 0 ? kAllButBackground : choice - 1;
}

QColor ToColour(Rgb colour) {
  return {colour.r, colour.g, colour.b};
}

}  // namespace

LookPanel::LookPanel(Editor& editor, QWidget* parent)
    : QGroupBox("Colors and transparency", parent),
      editor_(editor),
      pixels_(new QComboBox(this)),
      slider_(new QSlider(Qt::Horizontal, this)),
      value_(new QLabel(this)),
      cluts_(new QComboBox(this)),
      opaque_(new QCheckBox("Ignore transparency", this)),
      popup_(new ClutPopup(this)) {
  setObjectName("lookPanel");
  auto* const layout = new QGridLayout(this);
  for (int type = 0; type < kPixelTypes; ++type) AddPixelType(*layout, type);
  AddTransparency(*layout);
  AddClutChoice(*layout);
  AddOpaque(*layout);
  QList<QWidget*> order;
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    order << letters_[type] << swatches_[type];
  }
  OrderTabs(order << pixels_ << slider_ << cluts_ << opaque_);
  connect(popup_, &ClutPopup::Chosen, this,
          [this](int entry) { editor_.SetColour(pickedType_, entry); });
}

void LookPanel::AddPixelType(QGridLayout& layout, int type) {
  const auto index = static_cast<std::size_t>(type);
  const QString letter = kPixelTypeLetters[index];
  auto* const button = new QToolButton(this);
  NameControl(*button, QString("onlyType%1").arg(type), "Show only " + letter, {});
  button->setText(letter);
  button->setCheckable(true);
  button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(button, &QToolButton::clicked, this, [this, type] { editor_.ToggleOnlyType(type); });
  auto* const swatch = new SwatchButton(this);
  NameControl(*swatch, QString("swatch%1").arg(type), "Color of " + letter, {});
  connect(swatch, &SwatchButton::Picked, this, [this, type](bool edit) { PickColour(type, edit); });
  layout.addWidget(button, type, kLetterColumn);
  layout.addWidget(swatch, type, kSwatchColumn);
  letters_[index] = button;
  swatches_[index] = swatch;
}

void LookPanel::AddTransparency(QGridLayout& layout) {
  auto* const pixelsLabel = new QLabel("Pi&xels:", this);
  pixelsLabel->setBuddy(pixels_);
  pixels_->addItem("All");
  for (const char* const letter : kPixelTypeLetters) pixels_->addItem(letter);
  NameControl(*pixels_, "transparencyPixels", "Pixels whose transparency changes",
              "Selects of which pixel to change the transparency. All means all non-background "
              "pixels.");
  auto* const scale = new QLabel("clear --- transp. ---- opaque", this);
  scale->setBuddy(slider_);
  scale->setAlignment(Qt::AlignCenter);
  slider_->setRange(0, kOpaque);
  slider_->setPageStep(4);
  slider_->setTickPosition(QSlider::TicksBelow);
  NameControl(*slider_, "transparency", "Transparency, from 0 clear to 15 opaque",
              "Adjusts transparency for selected pixels.");
  value_->setObjectName("transparencyValue");
  value_->setMinimumWidth(value_->fontMetrics().horizontalAdvance("00"));
  value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* const sliderRow = new QHBoxLayout;
  sliderRow->addWidget(slider_, 1);
  sliderRow->addWidget(value_);
  layout.addWidget(pixelsLabel, kPixelsRow, kLabelColumn);
  layout.addWidget(pixels_, kPixelsRow, kChoiceColumn);
  layout.addWidget(scale, kScaleRow, kLabelColumn, 1, 2);
  layout.addLayout(sliderRow, kSliderRow, kLabelColumn, 1, 2);
  layout.setColumnMinimumWidth(kGapColumn, kGap);
  layout.setColumnStretch(kChoiceColumn, 1);
  connect(slider_, &QSlider::valueChanged, this, &LookPanel::ChangeTransparency);
  connect(pixels_, &QComboBox::currentIndexChanged, this,
          [this] { ShowTransparency(editor_.CurrentView()); });
}

void LookPanel::AddClutChoice(QGridLayout& layout) {
  auto* const label = new QLabel("C&LUT:", this);
  label->setBuddy(cluts_);
  cluts_->addItems({"IFO CLUT", "Automatic CLUT"});
  NameControl(*cluts_, "clutChoice", "Colors to show",
              "Use CLUT found in IFO, or use custom CLUT adjusted to best show text");
  connect(cluts_, &QComboBox::currentIndexChanged, this,
          [this](int entry) { editor_.UseAutomaticClut(entry != 0); });
  layout.addWidget(label, kClutRow, kLabelColumn);
  layout.addWidget(cluts_, kClutRow, kChoiceColumn);
}

void LookPanel::AddOpaque(QGridLayout& layout) {
  NameControl(*opaque_, "ignoreTransparency", "Ignore transparency",
              "Ignore pixel transparencies, except for background pixel. Useful to see menu "
              "highlights");
  connect(opaque_, &QCheckBox::toggled, this, [this](bool on) { editor_.IgnoreTransparency(on); });
  layout.addWidget(opaque_, kOpaqueRow, kLabelColumn, 1, 2);
}

void LookPanel::Show(const View& view, bool busy) {
  changeable_ = view.canEdit && !busy;
  for (std::size_t type = 0; type < kPixelTypes; ++type) ShowPixelType(view, type);
  ShowTransparency(view);
  const QSignalBlocker blocker(cluts_);
  cluts_->setCurrentIndex(view.hasUnit && (view.options.automaticClut || !view.clut) ? 1 : 0);
  cluts_->setEnabled(view.clut.has_value() && !busy);
  const QSignalBlocker opaqueBlocker(opaque_);
  opaque_->setChecked(view.options.ignoreTransparency);
  opaque_->setEnabled(view.hasUnit && !busy);
}

void LookPanel::ShowPixelType(const View& view, std::size_t type) {
  const Swatch& swatch = view.swatches[type];
  const QString tooltip = QString::fromStdString(swatch.tooltip);
  letters_[type]->setToolTip(tooltip);
  letters_[type]->setEnabled(view.hasUnit);
  letters_[type]->setChecked(view.options.onlyType == static_cast<int>(type));
  SwatchButton& button = *swatches_[type];
  button.SetColour(view.hasUnit ? ToColour(swatch.colour) : QColor());
  button.SetHatched(view.hasUnit && !swatch.used);
  button.setText(swatch.clutEntry ? QString::number(*swatch.clutEntry) : QString());
  button.setToolTip(view.clut ? QString::fromStdString(view.clutTooltip) : tooltip);
  button.setAccessibleDescription(view.hasUnit
                                      ? QString("Color %1, CLUT entry %2, opacity %3 of 15")
                                            .arg(ToColour(swatch.colour).name(), button.text())
                                            .arg(swatch.alpha)
                                      : QString());
  button.setEnabled(changeable_ && swatch.clutEntry.has_value());
}

void LookPanel::ShowTransparency(const View& view) {
  const int which = WhichOf(pixels_->currentIndex());
  const int alpha = which == kAllButBackground
                        ? view.textAlpha
                        : view.swatches.at(static_cast<std::size_t>(which)).alpha;
  const QSignalBlocker blocker(slider_);
  slider_->setValue(alpha);
  slider_->setEnabled(changeable_);
  pixels_->setEnabled(changeable_);
  value_->setText(view.hasUnit ? QString::number(alpha) : QString());
}

void LookPanel::PickColour(int type, bool edit) {
  const View& view = editor_.CurrentView();
  const Swatch& swatch = view.swatches.at(static_cast<std::size_t>(type));
  if (edit) {
    editor_.EditClutEntry(type);
  } else if (view.clut && swatch.clutEntry) {
    pickedType_ = type;
    popup_->OpenAt(*swatches_.at(static_cast<std::size_t>(type)), *view.clut, *swatch.clutEntry);
  }
}

void LookPanel::ChangeTransparency(int alpha) {
  editor_.SetTransparency(alpha, WhichOf(pixels_->currentIndex()));
}

}  // namespace quillomar
