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

  // Greys what cannot run now and shows the recent files.
  void Update();

 private:
  void AddCommand(QMenu& menu, const Command& command);
  void AddRecentFiles(QMenu& menu);
  void UpdateRecentFiles();

  struct Entry {
    const Command* command;
    QAction* action;
  };

  Editor& editor_;
  std::vector<Entry> entries_;
  std::vector<QAction*> recent_;  // by number of the entry; those without one are hidden
};

}  // namespace quillomar
