#pragma once

#include <QAction>
#include <QObject>
#include <vector>

#include "editor/command_table.h"

class QMenu;
class QMenuBar;

namespace quillomar {

class Editor;

// The menus, made from the command table.
class CommandMenus final : public QObject {
  Q_OBJECT

 public:
  CommandMenus(Editor& editor, QMenuBar& bar);

  // Greys what cannot run now.
  void Update();

 private:
  void AddCommand(QMenu& menu, const Command& command);

  struct Entry {
    const Command* command;
    QAction* action;
  };

  Editor& editor_;
  std::vector<Entry> entries_;
};

}  // namespace quillomar
