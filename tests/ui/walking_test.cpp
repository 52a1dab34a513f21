// Opening, the list, its filters, keys and names.

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <set>

#include "ui/kept_keys.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

TEST_F(WindowTest, TheListIsWalkedByKeysAndByNumber) {
  StartOnDisc();
  const int last = Shown().count - 1;
  EXPECT_EQ(Find<QSpinBox>("subpictureNumber").value(), 1);
  EXPECT_TRUE(Window().windowTitle().endsWith("VTS_01_1.VOB"));
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  Key(Qt::Key_Left);
  EXPECT_EQ(Shown().index, 1);
  EXPECT_EQ(Find<QSlider>("subpictureSlider").value(), 1);
  Key(Qt::Key_End);
  EXPECT_EQ(Shown().index, last);
  Key(Qt::Key_Right);
  EXPECT_EQ(Shown().index, last);
  Key(Qt::Key_Home);
  EXPECT_EQ(Shown().index, 0);

  Type("subpictureNumber", "4");
  EXPECT_EQ(Shown().index, 3);
  KeyOn("subpictureSlider", Qt::Key_Up);
  EXPECT_EQ(Shown().index, 4);
}

TEST_F(WindowTest, FiltersNarrowTheList) {
  StartOnDisc();
  const int all = Shown().count;
  WaitFor([this] { return Shown().video.frame != nullptr; });
  KeyOn("stream", Qt::Key_Down);
  EXPECT_EQ(Shown().stream, 1);
  EXPECT_GT(Shown().count, 0);
  EXPECT_LT(Shown().count, all);
  Press("previousStream");
  EXPECT_EQ(Shown().count, all);
  const auto streams = Shown().streams;
  Press("modifiedOnly");
  EXPECT_EQ(Shown().count, 0);
  EXPECT_EQ(Shown().streams, streams) << "nothing tells what they are";
  EXPECT_EQ(Shown().video.frame, nullptr);
  EXPECT_FALSE(IsEnabled("subpictureSlider"));
  Press("modifiedOnly");
  Find<QAbstractButton>("forcedOnly").setFocus();
  Key(Qt::Key_Return);
  EXPECT_GT(Shown().count, 0);
  EXPECT_LT(Shown().count, all);
}

TEST_F(WindowTest, BoxesAndMenusKeepTheirKeys) {
  StartOnDisc();
  auto& box = *new QLineEdit("text", &Window());
  box.show();
  box.setFocus();
  Key(Qt::Key_Home);
  EXPECT_EQ(box.cursorPosition(), 0);
  Key(Qt::Key_Right);
  EXPECT_EQ(Shown().index, 0);
  auto& menu = Find<QMenu>("fileMenu");
  menu.popup(Window().pos());
  QTest::keyClick(&menu, Qt::Key_Right);
  menu.close();
  EXPECT_EQ(Shown().index, 0);
}

TEST_F(WindowTest, EveryControlHasItsNamesAndItsToolTip) {
  StartOnDisc();
  std::set<QString> names;
  int controls = 0;
  for (const QWidget* const widget : Window().findChildren<QWidget*>()) {
    const bool isControl = qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                           qobject_cast<const QComboBox*>(widget) != nullptr ||
                           qobject_cast<const QAbstractSpinBox*>(widget) != nullptr ||
                           qobject_cast<const QSlider*>(widget) != nullptr ||
                           (qobject_cast<const QLineEdit*>(widget) != nullptr &&
                            KeysKeptBy(widget) != KeptKeys::kNone);
    const bool isPartOfAnother = widget->objectName().startsWith("qt_") ||
                                 widget->parentWidget()->inherits("QComboBox") ||
                                 widget->parentWidget()->objectName() == "clutPopup";
    if (!isControl || isPartOfAnother) continue;
    ++controls;
    const std::string name = widget->objectName().toStdString();
    EXPECT_FALSE(name.empty()) << widget->metaObject()->className();
    EXPECT_TRUE(names.insert(widget->objectName()).second) << name;
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << name;
    EXPECT_FALSE(widget->toolTip().isEmpty()) << name;
  }
  EXPECT_GT(controls, 20);
}

TEST_F(WindowTest, NoMnemonicServesTwo) {
  Start({});
  std::set<QString> mnemonics;
  const auto add = [&](const QString& text) {
    const auto at = text.indexOf('&');
    if (at < 0) return;
    EXPECT_TRUE(mnemonics.insert(text.mid(at + 1, 1).toLower()).second) << text.toStdString();
  };
  for (const QAction* const action : Window().menuBar()->actions()) add(action->text());
  for (const QLabel* const label : Window().findChildren<QLabel*>()) add(label->text());
  for (const auto* const button : Window().findChildren<QAbstractButton*>()) add(button->text());
  EXPECT_GT(mnemonics.size(), 10U);
}

TEST_F(WindowTest, MenusShowEveryCommandOnceAndNoKeyServesTwo) {
  Start({});
  std::set<QString> keys;
  std::set<CommandId> ids;
  for (const Command& command : Commands()) {
    EXPECT_TRUE(ids.insert(command.id).second) << command.name;
    EXPECT_NE(command.handler, nullptr) << command.name;
    for (const auto& key : QKeySequence::listFromString(command.key.data())) {
      if (command.key.empty()) continue;
      EXPECT_FALSE(key.isEmpty()) << command.key;
      EXPECT_TRUE(keys.insert(key.toString()).second) << command.key;
    }
    if (command.menu == Menu::kNone) continue;
    const auto& action = *Window().findChild<QAction*>(command.name.data());
    EXPECT_EQ(action.text().toStdString(), command.text);
    EXPECT_EQ(action.isEnabled(), TheEditor().Enabled(command)) << command.name;
  }
  EXPECT_EQ(static_cast<std::size_t>(*ids.rbegin()) + 1, ids.size()) << "an id is in no row";
  EXPECT_GT(keys.size(), 40U);
}

TEST_F(WindowTest, VobsAreOpenedAndOtherFilesRefused) {
  Start({disc_->Path("VTS_01_0.BUP")});
  EXPECT_FALSE(Shown().hasSet);
  EXPECT_TRUE(Drop(disc_->Path("VTS_01_0.IFO")));
  WaitFor([this] { return dialogs_.errors.size() == 2; });
  TheEditor().DropFiles({disc_->Path("VTS_01_1.VOB"), disc_->Path("VTS_02_1.VOB")});
  EXPECT_EQ(dialogs_.errors,
            (std::vector<std::string>{"Error, Quillomar can only open sup or vob files",
                                      "Error: I can only open VOB or SUP files",
                                      "All the VOB files must come from the same VTS"}));
  EXPECT_TRUE(Drop(disc_->Path("VTS_01_1.VOB")));
  WaitFor([this] { return Shown().count > 0 && !TheEditor().Busy(); });
}

TEST_F(WindowTest, HelpOpensTheManualAndThePages) {
  Start({});
  Key(Qt::Key_F1);
  ASSERT_EQ(dialogs_.documents.size(), 1U);
  EXPECT_EQ(dialogs_.documents[0], disc_->Path("Temp1.pdf"));
  const Bytes manual = FileBytes(dialogs_.documents[0]);
  ASSERT_GT(manual.size(), 10'000U);
  EXPECT_EQ(std::string(manual.begin(), manual.begin() + 5), "%PDF-");
  for (const CommandId id :
       {CommandId::kWeb, CommandId::kGuideHearingImpaired, CommandId::kGuideColours}) {
    TheEditor().Run(id);
    EXPECT_FALSE(FileBytes(dialogs_.documents.back()).empty()) << dialogs_.documents.back();
  }
  dialogs_.opensDocuments = false;
  Key(Qt::Key_F1);
  EXPECT_EQ(dialogs_.messages, std::vector<std::string>{"Can't open help!!"});
}

}  // namespace
}  // namespace quillomar::test
