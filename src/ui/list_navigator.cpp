#include "ui/list_navigator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <algorithm>

#include "editor/editor.h"
#include "ui/control_names.h"
#include "ui/step_button.h"

namespace quillomar {

ListNavigator::ListNavigator(Editor& editor, QWidget* parent)
    : QWidget(parent),
      editor_(editor),
      previous_(MakeStepButton(Qt::LeftArrow, "previousSubpicture", "Previous subpicture",
                               "Go to previous subpic", this)),
      slider_(new QSlider(Qt::Horizontal, this)),
      next_(MakeStepButton(Qt::RightArrow, "nextSubpicture", "Next subpicture", "Go to next subpic",
                           this)),
      number_(new QSpinBox(this)),
      count_(new QLabel(this)) {
  NameControls();
  auto* const label = new QLabel("Sub&pic:", this);
  label->setBuddy(number_);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(previous_);
  layout->addWidget(slider_, 1);
  layout->addWidget(next_);
  layout->addWidget(label);
  layout->addWidget(number_);
  layout->addWidget(count_);
  connect(previous_, &QToolButton::clicked, this, [this] { editor_.Run(CommandId::kPrevious); });
  connect(next_, &QToolButton::clicked, this, [this] { editor_.Run(CommandId::kNext); });
  connect(slider_, &QSlider::valueChanged, this, &ListNavigator::GoTo);
  connect(number_, &QSpinBox::valueChanged, this, [this](int number) { GoTo(number - 1); });
}

void ListNavigator::NameControls() {
  setObjectName("listNavigator");
  NameControl(*slider_, "subpictureSlider", "Subpicture",
              "Picks a subpic in the current selection");
  NameControl(*number_, "subpictureNumber", "Subpicture number",
              "Go straight to selected subpic number.");
  count_->setObjectName("subpictureCount");
  // A number is gone to when it is typed whole, not digit by digit.
  number_->setKeyboardTracking(false);
  number_->setMinimumWidth(number_->fontMetrics().horizontalAdvance("000000") * 2);
  count_->setMinimumWidth(count_->fontMetrics().horizontalAdvance("of 00000"));
}

void ListNavigator::TakeFocus() {
  slider_->setFocus();
}

// A job that changes subpictures keeps the list where it is; the controls then go back.
void ListNavigator::GoTo(int index) {
  editor_.GoTo(index);
  Show(editor_.CurrentView());
}

void ListNavigator::Show(const View& view) {
  const QSignalBlocker sliderBlocker(slider_);
  const QSignalBlocker numberBlocker(number_);
  const bool any = view.count > 0;
  slider_->setRange(0, std::max(view.count - 1, 0));
  slider_->setPageStep(std::max(view.count / 10, 1));
  slider_->setValue(view.index);
  number_->setRange(any ? 1 : 0, view.count);
  number_->setValue(any ? view.index + 1 : 0);
  count_->setText(QString("of %1").arg(view.count));
  slider_->setEnabled(any);
  number_->setEnabled(any);
  previous_->setEnabled(any);
  next_->setEnabled(any);
}

}  // namespace quillomar
