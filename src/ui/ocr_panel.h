#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "editor/text_view.h"

class QCheckBox;
class QGridLayout;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace quillomar {

class Editor;
class PictureView;
class TextBoxOverlay;
struct View;

// The recognised text of the current subpicture, with what can be done to it. Characters selected
// in the text are shown on the picture, and the other way round. Hidden until there is a text.
class OcrPanel final : public QWidget {
  Q_OBJECT

 public:
  OcrPanel(Editor& editor, PictureView& picture, QWidget* parent);

  void Show(const View& view, bool busy);

 signals:
  // The text of the current subpicture was just read, or something in it chosen on the picture.
  void TextWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void NameControls();
  void AddButtons(QGridLayout& layout);
  void AddCorrection(QGridLayout& layout);
  void ShowText(const TextView& text);
  void MarkText(const TextView& text);
  void Select(BoxRange range);
  void TakeSelection();
  void MarkBoxes();
  void Correct();

  Editor& editor_;
  TextBoxOverlay* boxes_;
  QPlainTextEdit* text_;
  QPushButton* erase_;
  QPushButton* doubtful_;
  QCheckBox* saved_;
  QLineEdit* correction_;
  QPushButton* correct_;
  // Where each character of the unit's boxes stands in the text; one more for the end.
  std::vector<int> places_;
  std::optional<BoxRange> selected_;
  int index_ = -1;     // of the subpicture shown
  bool read_ = false;  // its text was there already
};

}  // namespace quillomar
