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

void CommandMenus::AddRecentFiles(QMenu& menu) {
  menu.addSeparator();
  for (std::size_t i = 0; i < kMaxRecentFiles; ++i) {
    QAction* const action = menu.addAction(QString());
    action->setObjectName(QString("recentFile%1").arg(i));
    action->setMenuRole(QAction::NoRole);
    connect(action, &QAction::triggered, this, [this, i] { editor_.OpenRecent(i); });
    recent_.push_back(action);
  }
}

// The key stands in the text alone: key presses reach their commands by another way.
void CommandMenus::AddCommand(QMenu& menu, const Command& command) {
  if (command.id == CommandId::kExit) AddRecentFiles(menu);
  if (command.separatorBefore) menu.addSeparator();
  QAction* const action = menu.addAction(ToQString(command.text));
  action->setObjectName(ToQString(command.name));
  action->setMenuRole(QAction::NoRole);
  connect(action, &QAction::triggered, this, [this, id = command.id] { editor_.Run(id); });
  entries_.push_back({&command, action});
}

void CommandMenus::Update() {
  for (const Entry& entry : entries_) {
    entry.action->setEnabled(editor_.Enabled(*entry.command));
    entry.action->setText(ToQString(editor_.MenuText(*entry.command)));
  }
  UpdateRecentFiles();
}

void CommandMenus::UpdateRecentFiles() {
  const std::vector<CacheSummary>& files = editor_.Recent().Entries();
  for (std::size_t i = 0; i < recent_.size(); ++i) {
    const bool exists = i < files.size();
    recent_[i]->setVisible(exists);
    recent_[i]->setEnabled(exists && !editor_.Busy());
    // In a menu's text, "&" would mark a key.
    recent_[i]->setText(
        exists ? QString::fromStdString(RecentFileLabel(files[i])).replace("&", "&&") : QString());
  }
}

}  // namespace quillomar
