#pragma once

#include <QHash>
#include <QKeySequence>
#include <QObject>
#include <optional>
#include <vector>

#include "editor/command_table.h"

class QKeyEvent;
class QWidget;

namespace quillomar {

class Editor;

// Gives key presses to the commands before the controls see them. Keys that the control with the
// focus keeps stay with it; so do those for other windows, menus and pop-ups. Return presses the
// button that has the focus.
class KeyFilter final : public QObject {
  Q_OBJECT

 public:
  KeyFilter(Editor& editor, QObject* parent);

  // Keys pressed in this window count.
  void Watch(const QWidget& window) { windows_.push_back(&window); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool Watches(const QObject* receiver) const;
  // The command whose key this is where the focus now stands.
  [[nodiscard]] std::optional<CommandId> CommandOf(const QKeyEvent& event) const;

  Editor& editor_;
  QHash<QKeySequence, CommandId> commands_;
  std::vector<const QWidget*> windows_;
};

}  // namespace quillomar
