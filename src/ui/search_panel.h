#pragma once

#include <QWidget>

#include "editor/view.h"

class QCheckBox;
class QHBoxLayout;
class QLineEdit;
class QToolButton;

namespace quillomar {

class Editor;

// Finds subpictures by the text that was recognised in them.
class SearchPanel final : public QWidget {
  Q_OBJECT

 public:
  explicit SearchPanel(Editor& editor, QWidget* parent = nullptr);

  void Show(const View& view, bool busy);
  // The keyboard goes to the box for the characters to be found, which becomes empty.
  void FocusCharacters();

 protected:
  // F3 in the box for the search text: the window leaves all its keys to it.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QHBoxLayout* MakeSearch();
  [[nodiscard]] QHBoxLayout* MakeFilters();
  void FilterByCharacters();

  Editor& editor_;
  QLineEdit* text_;
  QToolButton* previous_ = nullptr;
  QToolButton* next_ = nullptr;
  QCheckBox* withText_;
  QCheckBox* withCharacters_;
  QLineEdit* characters_;
};

}  // namespace quillomar
