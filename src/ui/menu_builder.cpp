#include "ui/menu_builder.h"

#include <QMenu>
#include <QMenuBar>

#include "editor/editor.h"

namespace quillomar {
namespace {

struct MenuName {
  Menu menu;
  const char* objectName;
  const char* title;
};

constexpr MenuName kMenus[] = {
    {Menu::kFile, "fileMenu", "&File"},
    {Menu::kEdit, "editMenu", "&Edit"},
    {Menu::kOcr, "ocrMenu", "&OCR"},
    {Menu::kHelp, "helpMenu", "&Help"},
};

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

CommandMenus::CommandMenus(Editor& editor, QMenuBar& bar) : QObject(&bar), editor_(editor) {
  for (const MenuName& name : kMenus) {
    QMenu* const menu = bar.addMenu(name.title);
    menu->setObjectName(name.objectName);
    for (const Command& command : Commands()) {
      if (command.menu == name.menu) AddCommand(*menu, command);
    }
  }
  Update();
}

// The key stands in the text alone: key presses reach their commands by another way.
void CommandMenus::AddCommand(QMenu& menu, const Command& command) {
  if (command.separatorBefore) menu.addSeparator();
  QAction* const action = menu.addAction(ToQString(command.text));
  action->setObjectName(ToQString(command.name));
  action->setMenuRole(QAction::NoRole);
  connect(action, &QAction::triggered, this, [this, id = command.id] { editor_.Run(id); });
  entries_.push_back({&command, action});
}

void CommandMenus::Update() {
  for (const Entry& entry : entries_) entry.action->setEnabled(editor_.Enabled(*entry.command));
}

}  // namespace quillomar
