#include "ui/search_panel.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>

#include "editor/editor.h"
#include "ui/control_names.h"
#include "ui/kept_keys.h"
#include "ui/step_button.h"

namespace quillomar {
namespace {

constexpr int kLongestText = 1023;  // characters

}  // namespace

SearchPanel::SearchPanel(Editor& editor, QWidget* parent)
    : QWidget(parent),
      editor_(editor),
      text_(new QLineEdit(this)),
      withText_(new QCheckBox("With words", this)),
      withCharacters_(new QCheckBox("With any of:", this)),
      characters_(new QLineEdit(this)) {
  setObjectName("searchPanel");
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(MakeSearch());
  layout->addLayout(MakeFilters());
  OrderTabs({text_, previous_, next_, withText_, withCharacters_, characters_});
}

QHBoxLayout* SearchPanel::MakeSearch() {
  NameControl(*text_, "searchText", "Search string", "Type search string");
  text_->setMaxLength(kLongestText);
  text_->installEventFilter(this);
  connect(text_, &QLineEdit::textChanged, this,
          [this](const QString& text) { editor_.SetSearchText(text.toStdString()); });
  connect(text_, &QLineEdit::returnPressed, this, [this] { editor_.Run(CommandId::kFindNext); });
  previous_ = MakeStepButton(Qt::UpArrow, "findPreviousButton", "Find previous",
                             "Find previous occurence of search string in subpics", this);
  next_ = MakeStepButton(Qt::DownArrow, "findNextButton", "Find next",
                         "Find next occurence of search string in subpics", this);
  connect(previous_, &QToolButton::clicked, this,
          [this] { editor_.Run(CommandId::kFindPrevious); });
  connect(next_, &QToolButton::clicked, this, [this] { editor_.Run(CommandId::kFindNext); });
  auto* const label = new QLabel("&Words:", this);
  label->setBuddy(text_);
  auto* const row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(text_, 1);
  row->addWidget(previous_);
  row->addWidget(next_);
  return row;
}

QHBoxLayout* SearchPanel::MakeFilters() {
  NameControl(*withText_, "withSearchText", "Only subpics with the search string",
              "Only show subpics containing the search string");
  NameControl(*withCharacters_, "withCharacters", "Only subpics with these characters",
              "Only show subpics containing one of the following characters");
  NameControl(*characters_, "characters", "Characters to be found",
              "Type characters to be found in subpics");
  KeepKeys(*characters_, KeptKeys::kMoving);
  connect(withText_, &QCheckBox::toggled, this,
          [this](bool on) { editor_.FilterBySearchText(on); });
  connect(withCharacters_, &QCheckBox::toggled, this, &SearchPanel::FilterByCharacters);
  connect(characters_, &QLineEdit::textChanged, this, &SearchPanel::FilterByCharacters);
  auto* const row = new QHBoxLayout;
  row->addWidget(withText_);
  row->addWidget(withCharacters_);
  row->addWidget(characters_, 1);
  return row;
}

void SearchPanel::FilterByCharacters() {
  if (!withCharacters_->isChecked()) {
    editor_.FilterByCharacters(std::nullopt);
  } else {
    editor_.FilterByCharacters(characters_->text().toStdString());
  }
}

void SearchPanel::FocusCharacters() {
  characters_->clear();
  characters_->setFocus(Qt::ShortcutFocusReason);
}

bool SearchPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (key.key() != Qt::Key_F3) return QWidget::eventFilter(watched, event);
  const bool back = key.modifiers().testFlag(Qt::ShiftModifier);
  editor_.Run(back ? CommandId::kFindPrevious : CommandId::kFindNext);
  return true;
}

void SearchPanel::Show(const View& view, bool busy) {
  const bool usable = view.hasSet && !busy;
  for (QWidget* const control :
       {static_cast<QWidget*>(text_), static_cast<QWidget*>(characters_),
        static_cast<QWidget*>(withText_), static_cast<QWidget*>(withCharacters_)}) {
    control->setEnabled(usable);
  }
  for (QToolButton* const step : {previous_, next_}) {
    step->setEnabled(editor_.Enabled(FindCommandById(CommandId::kFindNext)));
  }
  const ListFilter& filter = editor_.List().filter;
  const QSignalBlocker textBlocker(withText_);
  const QSignalBlocker charactersBlocker(withCharacters_);
  withText_->setChecked(filter.search.has_value());
  withCharacters_->setChecked(filter.characters.has_value());
}

}  // namespace quillomar
