#include "ui/apply_all_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/control_names.h"
#include "ui/number_box.h"

namespace quillomar {
namespace {

constexpr int kLongestMs = 10'000;
constexpr int kStepMs = 100;

struct CheckText {
  bool ApplyAllChoices::*field;
  const char* name;
  const char* label;
  const char* toolTip;
};

// clang-format off
constexpr CheckText kChecks[] = {
    {&ApplyAllChoices::verticalPosition, "applyVertical", "Apply changes to subpic vertical pos.",
     "Moves every selected subpic to the vertical position set last"},
    {&ApplyAllChoices::horizontalPosition, "applyHorizontal", "Apply changes to subpic horizontal pos.",
     "Moves every selected subpic to the horizontal position set last"},
    {&ApplyAllChoices::startCommand, "applyStart", "Apply changes to start command",
     "Gives every selected subpic the start command set last"},
    {&ApplyAllChoices::transparency, "applyTransparency", "Apply changes to transparency",
     "Gives the pixels of every selected subpic the transparency set last"},
    {&ApplyAllChoices::borders, "applyBorders", "Apply borders",
     "Gives every selected subpic the vertical border set last"},
    {&ApplyAllChoices::colour, "applyColor", "Apply changes to color",
     "Gives the pixels of every selected subpic the colors set last"},
    {&ApplyAllChoices::durations, "applyDurations", "Set all durations to",
     "Sets how long every selected subpic is shown"},
    {&ApplyAllChoices::crop, "applyCrop", "Apply crop background",
     "Crops the background of every selected subpic"},
    {&ApplyAllChoices::fade, "applyFade", "Apply fade",
     "Adds or removes the Fade-In/Out effect, as was done last"},
    {&ApplyAllChoices::hide, "applyHide", "Apply Hide",
     "Completely hides every selected subpic (makes it transparent)"},
};
// clang-format on

}  // namespace

ApplyAllDialog::ApplyAllDialog(QWidget* parent) : QDialog(parent) {
  setObjectName("applyAll");
  setWindowTitle("Apply modifications to all selected SPU");
  auto* const layout = new QVBoxLayout(this);
  auto* const heading =
      new QLabel("Check the changes you'd like to see applied to all selected SPUs", this);
  heading->setObjectName("applyAllHeading");
  layout->addWidget(heading);
  for (const CheckText& text : kChecks) {
    auto* const box = new QCheckBox(text.label, this);
    NameControl(*box, text.name, text.label, text.toolTip);
    connect(box, &QCheckBox::toggled, this, &ApplyAllDialog::Update);
    checks_.push_back({box, text.field});
    if (text.field == &ApplyAllChoices::durations) {
      layout->addLayout(MakeDurations(*box));
    } else {
      layout->addWidget(box);
    }
  }
  layout->addWidget(MakeButtons());
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

QHBoxLayout* ApplyAllDialog::MakeDurations(QCheckBox& box) {
  durations_ = &box;
  durationMs_ = MakeNumberBox(0, kLongestMs, this);
  durationMs_->setSuffix(" ms");
  durationMs_->setSingleStep(kStepMs);
  NameControl(*durationMs_, "applyDurationMs", "Duration in milliseconds",
              "How long every selected subpic is to be shown");
  durationMode_ = new QComboBox(this);
  durationMode_->addItems({"for every subpic", "only where shorter", "only where longer"});
  NameControl(*durationMode_, "applyDurationMode", "Durations to set",
              "Which subpics get the duration: all, those that are shown for a shorter time, or "
              "those that are shown for a longer time");
  auto* const row = new QHBoxLayout;
  row->addWidget(&box);
  row->addWidget(durationMs_);
  row->addWidget(durationMode_, 1);
  return row;
}

QDialogButtonBox* ApplyAllDialog::MakeButtons() {
  auto* const buttons = new QDialogButtonBox(this);
  apply_ = buttons->addButton("DO IT!", QDialogButtonBox::AcceptRole);
  NameControl(*apply_, "applyAllDoIt", "DO IT!",
              "Applies the checked changes to all selected subpics");
  apply_->setDefault(true);
  NameControl(*buttons->addButton(QDialogButtonBox::Cancel), "applyAllCancel", "Cancel",
              "Closes this window and changes nothing");
  buttons->button(QDialogButtonBox::Cancel)->setText("Cancel");
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  return buttons;
}

std::optional<ApplyAllChoices> ApplyAllDialog::Choose(const ApplyAllChoices& offered) {
  Offer(offered);
  if (exec() != Accepted) return std::nullopt;
  // The flush of the borders is no choice of its own.
  ApplyAllChoices chosen = offered;
  for (const auto& [box, field] : checks_) chosen.*field = box->isChecked();
  chosen.durationMs = durationMs_->value();
  chosen.durationMode = static_cast<DurationMode>(durationMode_->currentIndex());
  return chosen;
}

void ApplyAllDialog::Offer(const ApplyAllChoices& offered) {
  for (const auto& [box, field] : checks_) {
    box->setChecked(false);
    box->setEnabled(offered.*field);
  }
  ShowNumber(*durationMs_, offered.durationMs);
  durationMode_->setCurrentIndex(static_cast<int>(DurationMode::kSet));
  const auto first = std::find_if(checks_.begin(), checks_.end(),
                                  [](const Check& check) { return check.box->isEnabled(); });
  if (first != checks_.end()) first->box->setFocus();
  Update();
}

void ApplyAllDialog::Update() {
  const bool durations = durations_->isChecked();
  durationMs_->setEnabled(durations);
  durationMode_->setEnabled(durations);
  apply_->setEnabled(std::any_of(checks_.begin(), checks_.end(),
                                 [](const Check& check) { return check.box->isChecked(); }));
}

}  // namespace quillomar
