#include "ui/ocr_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>

#include "editor/editor.h"
#include "ui/control_names.h"
#include "ui/kept_keys.h"
#include "ui/text_box_overlay.h"
#include "ui/text_marks.h"

namespace quillomar {
namespace {

constexpr int kShownLines = 3;
constexpr int kMarkOpacity = 110;  // of 255

QString TextOf(const TextView& view, std::vector<int>& places) {
  QString text;
  places.clear();
  for (const TextCharacter& character : view.characters) {
    places.push_back(static_cast<int>(text.size()));
    text += QString::fromUcs4(&character.ch, 1);
  }
  places.push_back(static_cast<int>(text.size()));
  if (!view.characters.empty()) {
    if (text.endsWith('\n')) text.chop(1);
    return text;
  }
  QStringList lines;
  for (const std::string& line : view.lines) lines << QString::fromStdString(line);
  return lines.join('\n');
}

}  // namespace

OcrPanel::OcrPanel(Editor& editor, PictureView& picture, QWidget* parent)
    : QWidget(parent),
      editor_(editor),
      boxes_(new TextBoxOverlay(picture)),
      text_(new QPlainTextEdit(this)),
      erase_(new QPushButton("Erase", this)),
      doubtful_(new QPushButton("Next doubtful", this)),
      saved_(new QCheckBox("Saved", this)),
      correction_(new QLineEdit(this)),
      correct_(new QPushButton("Correct", this)) {
  NameControls();
  text_->setReadOnly(true);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setTabChangesFocus(true);
  text_->setFixedHeight(kShownLines * text_->fontMetrics().lineSpacing() + 2 * text_->frameWidth() +
                        static_cast<int>(2 * text_->document()->documentMargin()));
  text_->installEventFilter(this);
  KeepKeys(*text_, KeptKeys::kText);
  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setColumnStretch(0, 1);
  layout->addWidget(text_, 0, 0, 2, 1);
  AddButtons(*layout);
  AddCorrection(*layout);
  OrderTabs({text_, erase_, doubtful_, saved_, correction_, correct_});
  hide();
  connect(text_, &QPlainTextEdit::selectionChanged, this, &OcrPanel::TakeSelection);
  connect(boxes_, &TextBoxOverlay::Chosen, this, [this](BoxRange range) {
    emit TextWanted();
    Select(range);
    text_->setFocus(Qt::MouseFocusReason);
  });
}

void OcrPanel::NameControls() {
  setObjectName("ocrPanel");
  NameControl(*text_, "ocrText", "Recognized text", {});
  NameControl(*erase_, "eraseTextButton", "Erase selected text",
              "Erase selected text from OCR output and bitmap. (shortcut: Del or Backspace or "
              "Ctlr-X)");
  NameControl(*doubtful_, "nextDoubtfulButton", "Next doubtful character",
              "Go to the next doubtful or unknown character (F4)");
  NameControl(*saved_, "savedText", "OCR of saved subtitle", "Show OCR of saved subtitle");
  NameControl(*correction_, "correction", "Correction",
              "What the selected characters should be. The glyph is remembered, here and on other "
              "discs.");
  NameControl(*correct_, "correctButton", "Correct",
              "Correct the selected characters, and all that look like them if you want");
}

void OcrPanel::AddButtons(QGridLayout& layout) {
  const auto runs = [this](QPushButton* button, CommandId command) {
    connect(button, &QPushButton::clicked, this, [this, command] { editor_.Run(command); });
  };
  runs(erase_, CommandId::kEraseOcrText);
  runs(doubtful_, CommandId::kNextDoubtful);
  connect(saved_, &QCheckBox::toggled, this, [this](bool on) { editor_.ShowSavedText(on); });
  layout.addWidget(erase_, 0, 1);
  layout.addWidget(doubtful_, 0, 2);
  layout.addWidget(saved_, 0, 3);
}

void OcrPanel::AddCorrection(QGridLayout& layout) {
  correction_->setPlaceholderText("Correction");
  correction_->installEventFilter(this);
  connect(correction_, &QLineEdit::returnPressed, this, &OcrPanel::Correct);
  connect(correct_, &QPushButton::clicked, this, &OcrPanel::Correct);
  layout.addWidget(correction_, 1, 1, 1, 2);
  layout.addWidget(correct_, 1, 3);
}

void OcrPanel::Show(const View& view, bool busy) {
  ShowText(view.text);
  boxes_->Show(view.text, FrameHeight(view.standard));
  if (view.text.chosen) Select(*view.text.chosen);
  MarkBoxes();
  const auto enable = [this](QPushButton* button, CommandId command) {
    button->setEnabled(editor_.Enabled(FindCommandById(command)));
  };
  enable(doubtful_, CommandId::kNextDoubtful);
  const bool hasBoxes = !busy && !view.text.characters.empty();
  erase_->setEnabled(hasBoxes);
  correction_->setEnabled(hasBoxes);
  correct_->setEnabled(hasBoxes);
  saved_->setEnabled(view.hasUnit && !busy);
  const QSignalBlocker blocker(saved_);
  saved_->setChecked(view.text.showsSaved);
  const bool justRead = view.index == index_ && view.text.read && !read_;
  index_ = view.index;
  read_ = view.text.read;
  if (justRead) emit TextWanted();
}

void OcrPanel::ShowText(const TextView& text) {
  std::vector<int> places;
  const QString shown = TextOf(text, places);
  if (shown != text_->toPlainText() || places != places_) {
    places_ = std::move(places);
    text_->setPlainText(shown);
    TakeSelection();
  }
  text_->setPlaceholderText(text.read ? "No text" : "Ctrl+T reads the text of this subpic");
  MarkText(text);
}

void OcrPanel::MarkText(const TextView& text) {
  QList<QTextEdit::ExtraSelection> marks;
  for (std::size_t i = 0; i < text.characters.size(); ++i) {
    if (!IsMarked(text.characters[i])) continue;
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(text_->document());
    mark.cursor.setPosition(places_[i]);
    mark.cursor.setPosition(places_[i + 1], QTextCursor::KeepAnchor);
    QColor colour = MarkColour(text.characters[i]);
    colour.setAlpha(kMarkOpacity);
    mark.format.setBackground(colour);
    marks << mark;
  }
  text_->setExtraSelections(marks);
}

void OcrPanel::Select(BoxRange range) {
  const int count = static_cast<int>(places_.size()) - 1;
  if (range.first < 0 || range.last >= count) return;
  QTextCursor cursor = text_->textCursor();
  cursor.setPosition(places_[static_cast<std::size_t>(range.first)]);
  const int end = std::min<int>(places_[static_cast<std::size_t>(range.last) + 1],
                                static_cast<int>(text_->toPlainText().size()));
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  text_->setTextCursor(cursor);
  text_->ensureCursorVisible();
}

void OcrPanel::TakeSelection() {
  const QTextCursor cursor = text_->textCursor();
  selected_.reset();
  for (int i = 0; i + 1 < static_cast<int>(places_.size()); ++i) {
    const int place = places_[static_cast<std::size_t>(i)];
    if (place < cursor.selectionStart() || place >= cursor.selectionEnd()) continue;
    selected_ = BoxRange{selected_ ? selected_->first : i, i};
  }
  correction_->setText(cursor.selectedText());
  editor_.SelectText(selected_);
  MarkBoxes();
}

void OcrPanel::MarkBoxes() {
  boxes_->Mark(selected_, text_->hasFocus() || correction_->hasFocus());
}

void OcrPanel::Correct() {
  editor_.CorrectText(correction_->text().toStdString());
}

bool OcrPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) MarkBoxes();
  if (watched == correction_ && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_F4) {
    editor_.Run(CommandId::kNextDoubtful);
    correction_->selectAll();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace quillomar
