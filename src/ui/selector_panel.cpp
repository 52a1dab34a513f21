#include "ui/selector_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>

#include "editor/editor.h"
#include "ui/control_names.h"
#include "ui/step_button.h"

namespace quillomar {
namespace {

enum Row { kStreamRow, kVcidRow, kSequenceRow, kModifiedRow, kForcedRow };
enum Column { kLabelColumn, kListColumn, kPreviousColumn, kNextColumn };
constexpr int kShownCharacters = 12;

bool ShowsAlready(const QComboBox& box, const QStringList& entries) {
  if (box.count() != entries.size()) return false;
  for (int i = 0; i < box.count(); ++i) {
    if (box.itemText(i) != entries[i]) return false;
  }
  return true;
}

void Fill(QComboBox& box, const std::vector<std::string>& entries, const char* first, int chosen) {
  QStringList texts;
  for (const std::string& entry : entries) texts.append(QString::fromStdString(entry));
  if (texts.isEmpty()) texts.append(first);
  const QSignalBlocker blocker(&box);
  if (!ShowsAlready(box, texts)) {
    box.clear();
    box.addItems(texts);
  }
  box.setCurrentIndex(chosen);
}

void AddRow(QGridLayout& layout, Row row, const QString& text, QComboBox& box) {
  auto* const label = new QLabel(text);
  label->setBuddy(&box);
  box.setMinimumContentsLength(kShownCharacters);
  box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  layout.addWidget(label, row, kLabelColumn);
  layout.addWidget(&box, row, kListColumn);
}

}  // namespace

SelectorPanel::SelectorPanel(Editor& editor, QWidget* parent)
    : QGroupBox("Selection", parent),
      editor_(editor),
      streams_(new QComboBox(this)),
      vcids_(new QComboBox(this)),
      sequences_(new QComboBox(this)),
      modifiedOnly_(new QCheckBox("Only show &modified subpics", this)),
      forcedOnly_(new QCheckBox("Only show for&ced subpics", this)) {
  setObjectName("selectorPanel");
  auto* const layout = new QGridLayout(this);
  layout->setColumnStretch(kListColumn, 1);
  AddStreams(*layout);
  AddVcids(*layout);
  AddSequences(*layout);
  AddFilters(*layout);
}

void SelectorPanel::AddStreams(QGridLayout& layout) {
  NameControl(*streams_, "stream", "Subpicture stream", "Filter subpics based on stream ID");
  connect(streams_, &QComboBox::currentIndexChanged, this,
          [this](int entry) { editor_.ChooseStream(entry); });
  auto* const previous = MakeStepButton(Qt::UpArrow, "previousStream", "Previous stream",
                                        "Go to previous subpic stream", this);
  auto* const next =
      MakeStepButton(Qt::DownArrow, "nextStream", "Next stream", "Go to next subpic stream", this);
  connect(previous, &QToolButton::clicked, this, [this] { editor_.StepStream(-1); });
  connect(next, &QToolButton::clicked, this, [this] { editor_.StepStream(1); });
  AddRow(layout, kStreamRow, "&Stream:", *streams_);
  layout.addWidget(previous, kStreamRow, kPreviousColumn);
  layout.addWidget(next, kStreamRow, kNextColumn);
  steps_.insert(steps_.end(), {previous, next});
}

void SelectorPanel::AddVcids(QGridLayout& layout) {
  NameControl(*vcids_, "vcid", "VOB and cell", "Filter subpics based on V/CID");
  connect(vcids_, &QComboBox::currentIndexChanged, this,
          [this](int entry) { editor_.ChooseVcid(entry); });
  auto* const previous = MakeStepButton(Qt::UpArrow, "previousVcid", "Previous VOB and cell",
                                        "Go to previous V/CID", this);
  auto* const next =
      MakeStepButton(Qt::DownArrow, "nextVcid", "Next VOB and cell", "Go to next V/CID", this);
  connect(previous, &QToolButton::clicked, this, [this] { editor_.StepVcid(-1); });
  connect(next, &QToolButton::clicked, this, [this] { editor_.StepVcid(1); });
  AddRow(layout, kVcidRow, "&V/CID:", *vcids_);
  layout.addWidget(previous, kVcidRow, kPreviousColumn);
  layout.addWidget(next, kVcidRow, kNextColumn);
  steps_.insert(steps_.end(), {previous, next});
}

void SelectorPanel::AddSequences(QGridLayout& layout) {
  NameControl(*sequences_, "sequence", "Control sequence",
              "Selects the DCSQT (set of commands) to visualize and modify");
  connect(sequences_, &QComboBox::currentIndexChanged, this,
          [this](int entry) { editor_.ChooseSequence(entry); });
  AddRow(layout, kSequenceRow, "&DCSQT:", *sequences_);
}

void SelectorPanel::AddFilters(QGridLayout& layout) {
  NameControl(*modifiedOnly_, "modifiedOnly", "Only show modified subpics",
              "Only show modified subpics");
  NameControl(*forcedOnly_, "forcedOnly", "Only show forced subpics",
              "Only show subpics which have a forced-start command (forced subpics).");
  connect(modifiedOnly_, &QCheckBox::toggled, this,
          [this](bool on) { editor_.SetModifiedOnly(on); });
  connect(forcedOnly_, &QCheckBox::toggled, this, [this](bool on) { editor_.SetForcedOnly(on); });
  layout.addWidget(modifiedOnly_, kModifiedRow, kLabelColumn, 1, kNextColumn + 1);
  layout.addWidget(forcedOnly_, kForcedRow, kLabelColumn, 1, kNextColumn + 1);
}

void SelectorPanel::Show(const View& view, bool busy) {
  Fill(*streams_, view.streams, "All Streams", view.stream);
  Fill(*vcids_, view.vcids, "All VCID", view.vcid);
  Fill(*sequences_, view.sequences, "All DCSQTs", view.sequence);
  const bool choosable = view.hasSet && !busy;
  streams_->setEnabled(choosable);
  vcids_->setEnabled(choosable);
  sequences_->setEnabled(choosable && view.hasUnit);
  for (QToolButton* const step : steps_) step->setEnabled(choosable);
  for (QCheckBox* const filter : {modifiedOnly_, forcedOnly_}) filter->setEnabled(choosable);
  const ListFilter& filter = editor_.List().filter;
  const QSignalBlocker modifiedBlocker(modifiedOnly_);
  const QSignalBlocker forcedBlocker(forcedOnly_);
  modifiedOnly_->setChecked(filter.modifiedOnly);
  forcedOnly_->setChecked(filter.forcedOnly);
}

}  // namespace quillomar
