#include "ui/retime_dialog.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <algorithm>
#include <cmath>

#include "retime/timeline.h"
#include "ui/control_names.h"

namespace quillomar {
namespace {

constexpr double kSmallestRange = 0.1;
constexpr double kLargestRange = 100'000;
constexpr double kStep = 0.1;
constexpr int kDecimals = 3;
constexpr int kSliderWidth = 360;
constexpr const char* kTip = "Seconds by which the start moves; below 0 is earlier";

double FrameSeconds(VideoStandard standard) {
  return static_cast<double>(FrameTicks(standard)) / TicksPerSecond(standard);
}

int WholeFrames(double seconds, VideoStandard standard) {
  return static_cast<int>(DeltaTicks(seconds, standard) / FrameTicks(standard));
}

}  // namespace

RetimeDialog::RetimeDialog(QWidget* parent)
    : QDialog(parent),
      slider_(new QSlider(Qt::Horizontal, this)),
      number_(new QDoubleSpinBox(this)),
      frames_(new QLabel(this)) {
  setObjectName("retime");
  NameControl(*slider_, "retimeSlider", "Change of the start time in frames", kTip);
  NameControl(*number_, "retimeSeconds", "Change of the start time in seconds", kTip);
  frames_->setObjectName("retimeFrames");
  slider_->setMinimumWidth(kSliderWidth);
  number_->setDecimals(kDecimals);
  number_->setSingleStep(kStep);
  number_->setSuffix(" s");
  number_->setAlignment(Qt::AlignRight);
  // The number shown is rounded; a whole frame must not get lost by that.
  connect(slider_, &QSlider::valueChanged, this, [this](int frames) {
    const QSignalBlocker blocker(number_);
    Take(frames * FrameSeconds(standard_));
    number_->setValue(seconds_);
  });
  connect(number_, &QDoubleSpinBox::valueChanged, this, [this](double seconds) {
    const QSignalBlocker blocker(slider_);
    Take(seconds);
    slider_->setValue(WholeFrames(seconds, standard_));
  });
  auto* const row = new QHBoxLayout;
  row->addWidget(slider_, 1);
  row->addWidget(number_);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addWidget(frames_);
  layout->addWidget(MakeButtons());
  OrderTabs({number_, slider_});
}

QDialogButtonBox* RetimeDialog::MakeButtons() {
  auto* const buttons = new QDialogButtonBox(this);
  auto* const ok = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
  auto* const cancel = buttons->addButton("Cancel", QDialogButtonBox::RejectRole);
  NameControl(*ok, "retimeOk", "OK", "Moves the start");
  NameControl(*cancel, "retimeCancel", "Cancel", "Closes this window and changes nothing");
  ok->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  return buttons;
}

std::optional<double> RetimeDialog::Choose(const RetimeRequest& request) {
  setWindowTitle(QString::fromStdString(request.title));
  standard_ = request.standard;
  SetRange(std::clamp(std::abs(request.range), kSmallestRange, kLargestRange));
  number_->setFocus();
  number_->selectAll();
  return exec() == Accepted ? std::optional(seconds_) : std::nullopt;
}

void RetimeDialog::SetRange(double seconds) {
  const QSignalBlocker sliderBlocker(slider_);
  const QSignalBlocker numberBlocker(number_);
  const int frames = WholeFrames(seconds, standard_);
  slider_->setRange(-frames, frames);
  slider_->setPageStep(WholeFrames(1, standard_));
  slider_->setValue(0);
  number_->setRange(-seconds, seconds);
  number_->setValue(0);
  Take(0);
}

void RetimeDialog::Take(double seconds) {
  seconds_ = seconds;
  const int frames = WholeFrames(seconds_, standard_);
  const QString count =
      QString::number(std::abs(frames)) + (std::abs(frames) == 1 ? " frame" : " frames");
  frames_->setText(frames == 0
                       ? QString("No change (less than a frame)")
                       : QString("Starts %1 %2").arg(count, frames > 0 ? "later" : "earlier"));
}

}  // namespace quillomar
