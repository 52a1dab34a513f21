#include "ui/time_panel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include "editor/editor.h"
#include "ui/control_names.h"
#include "ui/number_box.h"

namespace quillomar {
namespace {

// What can be set where nothing limits the duration yet: the subpicture has no end.
constexpr DelayLimits kUnlimited = {0, 10'000};
constexpr int kStepMs = 100;
constexpr const char* kDurationTip = "Adjusts the subpic duration";

}  // namespace

TimePanel::TimePanel(Editor& editor, QWidget* parent)
    : QGroupBox("Timing", parent),
      editor_(editor),
      duration_(MakeNumberBox(kUnlimited.smallest, kUnlimited.largest, this)),
      durationSlider_(new QSlider(Qt::Horizontal, this)),
      infinite_(new QPushButton("Infinite", this)),
      start_(new QComboBox(this)),
      addFade_(new QPushButton("Add fade", this)),
      removeFade_(new QPushButton("Remove fade", this)),
      hide_(new QPushButton("Hide", this)),
      retime_(new QPushButton("Start time...", this)),
      retimeAll_(new QPushButton("All start times...", this)) {
  setObjectName("timePanel");
  auto* const layout = new QGridLayout(this);
  AddDuration(*layout);
  AddStart(*layout);
  AddEffects(*layout);
  AddRetiming(*layout);
  OrderTabs({duration_, infinite_, durationSlider_, start_, addFade_, removeFade_, hide_, retime_,
             retimeAll_});
}

// Where there is no end, a duration asks whether to add one; dragging asks only at its end.
void TimePanel::AddDuration(QGridLayout& layout) {
  auto* const label = new QLabel("Dura&tion:", this);
  label->setBuddy(duration_);
  duration_->setSuffix(" ms");
  duration_->setSingleStep(kStepMs);
  durationSlider_->setTracking(false);
  durationSlider_->setSingleStep(kStepMs);
  durationSlider_->setPageStep(10 * kStepMs);
  NameControl(*duration_, "duration", "Duration in milliseconds", kDurationTip);
  NameControl(*durationSlider_, "durationSlider", "Duration", kDurationTip);
  NameControl(*infinite_, "infinite", "Infinite duration",
              "Make the subpic display indefinitely (or until the next one) - removes the STP_DSP "
              "command");
  const auto change = [this](int ms) { editor_.SetDuration(ms); };
  connect(duration_, &QSpinBox::valueChanged, this, change);
  connect(durationSlider_, &QSlider::valueChanged, this, change);
  connect(durationSlider_, &QSlider::sliderMoved, this,
          [this](int ms) { ShowNumber(*duration_, ms); });
  connect(infinite_, &QPushButton::clicked, this, [this] { editor_.MakeInfinite(); });
  layout.addWidget(label, 0, 0);
  layout.addWidget(duration_, 0, 1);
  layout.addWidget(infinite_, 0, 2);
  layout.addWidget(durationSlider_, 1, 0, 1, 3);
}

void TimePanel::AddStart(QGridLayout& layout) {
  auto* const label = new QLabel("Start comma&nd:", this);
  label->setBuddy(start_);
  start_->addItems({"Normal", "Forced"});
  NameControl(*start_, "startCommand", "Start command",
              "Select the subpic start command. Forced means the subpic will be on if the stream "
              "is selected, even if subtitles are off.");
  connect(start_, &QComboBox::currentIndexChanged, this,
          [this](int entry) { editor_.SetForced(entry != 0); });
  layout.addWidget(label, 2, 0);
  layout.addWidget(start_, 2, 1, 1, 2);
}

void TimePanel::AddEffects(QGridLayout& layout) {
  NameControl(*addFade_, "addFade", "Add fade", "Add Fade-In/Out effect to subpic");
  NameControl(*removeFade_, "removeFade", "Remove fade", "Remove Fade-In/Out effect from subpic");
  NameControl(*hide_, "hideButton", "Hide subpicture",
              "Completely hide this subpic (make it transparent)");
  connect(addFade_, &QPushButton::clicked, this, [this] { editor_.AddFade(); });
  connect(removeFade_, &QPushButton::clicked, this, [this] { editor_.RemoveFade(); });
  connect(hide_, &QPushButton::clicked, this, [this] { editor_.Run(CommandId::kHide); });
  layout.addWidget(addFade_, 3, 0);
  layout.addWidget(removeFade_, 3, 1);
  layout.addWidget(hide_, 3, 2);
}

void TimePanel::AddRetiming(QGridLayout& layout) {
  NameControl(*retime_, "retimeButton", "Start time", "Modify start time of current subpic");
  NameControl(*retimeAll_, "retimeAllButton", "All start times",
              "Modify start time of all selected subpics");
  connect(retime_, &QPushButton::clicked, this, [this] { editor_.Run(CommandId::kRetimeCurrent); });
  connect(retimeAll_, &QPushButton::clicked, this, [this] { editor_.Run(CommandId::kRetimeAll); });
  layout.addWidget(retime_, 4, 0);
  layout.addWidget(retimeAll_, 4, 1, 1, 2);
}

void TimePanel::Show(const View& view, bool busy) {
  const bool changeable = view.canEdit && !busy;
  const TimeView& time = view.time;
  ShowDuration(time, changeable);
  const QSignalBlocker blocker(start_);
  start_->setCurrentIndex(time.forced ? 1 : 0);
  start_->setEnabled(changeable && time.canStart);
  infinite_->setEnabled(changeable && time.durationMs >= 0);
  addFade_->setEnabled(changeable && time.canAddFade);
  removeFade_->setEnabled(changeable && time.hasFade);
  hide_->setEnabled(changeable);
  retime_->setEnabled(editor_.Enabled(FindCommandById(CommandId::kRetimeCurrent)));
  retimeAll_->setEnabled(editor_.Enabled(FindCommandById(CommandId::kRetimeAll)));
}

void TimePanel::ShowDuration(const TimeView& time, bool changeable) {
  const QSignalBlocker boxBlocker(duration_);
  const QSignalBlocker sliderBlocker(durationSlider_);
  const bool ends = time.durationMs >= 0;
  const DelayLimits limits = time.limits.value_or(kUnlimited);
  duration_->setSpecialValueText(ends || !changeable ? QString() : "infinite");
  duration_->setRange(limits.smallest, limits.largest);
  durationSlider_->setRange(limits.smallest, limits.largest);
  ShowNumber(*duration_, ends ? time.durationMs : limits.smallest);
  durationSlider_->setValue(ends ? time.durationMs : limits.smallest);
  duration_->setEnabled(changeable);
  durationSlider_->setEnabled(changeable);
}

}  // namespace quillomar
