#pragma once

#include <QGroupBox>
#include <string>
#include <vector>

#include "editor/view.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QToolButton;

namespace quillomar {

class Editor;

// What the list shows: stream, VCID, and the two filters; and the control sequence to work on.
class SelectorPanel final : public QGroupBox {
  Q_OBJECT

 public:
  explicit SelectorPanel(Editor& editor, QWidget* parent = nullptr);

  // Shows a snapshot; while a job runs nothing can be chosen.
  void Show(const View& view, bool busy);

 private:
  void AddStreams(QGridLayout& layout);
  void AddVcids(QGridLayout& layout);
  void AddSequences(QGridLayout& layout);
  void AddFilters(QGridLayout& layout);

  Editor& editor_;
  QComboBox* streams_;
  QComboBox* vcids_;
  QComboBox* sequences_;
  QCheckBox* modifiedOnly_;
  QCheckBox* forcedOnly_;
  std::vector<QToolButton*> steps_;
};

}  // namespace quillomar
