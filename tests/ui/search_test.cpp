// Finding by recognised text, the keys that boxes keep, menu buttons.

#include <QAbstractButton>
#include <QCheckBox>
#include <QLineEdit>

#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class SearchTest : public WindowTest {
 protected:
  // Gives the n-th subpicture of the list (from 0) a text.
  void Recognise(std::size_t index, std::vector<std::string> lines) {
    Document::Unrecorded(TheEditor().List().List().at(index)).ocrText = std::move(lines);
  }
};

TEST_F(SearchTest, TextIsFoundForwardsBackwardsAndOnceAround) {
  StartOnDisc();
  Recognise(1, {"Come in", "please"});
  Recognise(4, {"COME back"});
  auto& box = Find<QLineEdit>("searchText");
  box.setFocus();
  QTest::keyClicks(&box, "come ");
  EXPECT_EQ(box.text(), "come ");
  Key(Qt::Key_Return);
  EXPECT_EQ(Shown().index, 1);
  Key(Qt::Key_F3);
  EXPECT_EQ(Shown().index, 4);
  Find<QAbstractButton>("cropButton").setFocus();
  Key(Qt::Key_F3);
  EXPECT_EQ(Shown().index, 1);
  Key(Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(Shown().index, 4);
  TheEditor().Context().preferences.ocrCaseSensitive = 1;
  Find<QAbstractButton>("findPreviousButton").click();
  EXPECT_EQ(Shown().index, 4);
  EXPECT_EQ(dialogs_.beeps, 1);
  box.clear();
  Find<QAbstractButton>("findNextButton").click();
  EXPECT_EQ(dialogs_.beeps, 2);
}

TEST_F(SearchTest, TheListShowsWhatHoldsCharactersOrTheText) {
  StartOnDisc();
  const int all = Shown().count;
  Recognise(1, {"lt is", "I"});
  Recognise(2, {"Who"});
  Key(Qt::Key_G, Qt::ControlModifier);
  auto& box = Find<QLineEdit>("characters");
  EXPECT_TRUE(box.hasFocus());
  auto& only = Find<QCheckBox>("withCharacters");
  only.click();
  EXPECT_EQ(Shown().count, all);
  QTest::keyClicks(&box, "Wl ");
  EXPECT_EQ(Shown().count, 2);
  Key(Qt::Key_Home);
  EXPECT_EQ(box.cursorPosition(), 0);
  Key(Qt::Key_H, Qt::ControlModifier);
  EXPECT_NE(Shown().infoRtf.find("Modified"), std::string::npos);
  Key(Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(Shown().count, all);
  only.click();
  Find<QLineEdit>("searchText").setText("wh");
  Find<QCheckBox>("withSearchText").click();
  EXPECT_EQ(Shown().count, 1);
  Find<QLineEdit>("searchText").setText("q");
  EXPECT_EQ(Shown().count, 0);
}

TEST_F(SearchTest, KeysShowMenuButtons) {
  const DiscCopy menu("menu");
  Start(menu.MenuVobs());
  WaitForIdle();
  ASSERT_GT(Shown().buttonCount, 1);
  const auto plain = Shown().picture.rgba;
  Key(Qt::Key_Q, Qt::ControlModifier);
  const auto selected = Shown().picture.rgba;
  EXPECT_NE(selected, plain);
  Key(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_NE(Shown().picture.rgba, selected);
  Key(Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(Shown().options.button, Shown().buttonCount - 1);
  EXPECT_NE(Shown().picture.rgba, selected);
  Key(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(Shown().options.button, 0);
  Key(Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(Shown().options.button, 1);
  Key(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(Shown().options.button, 1);
  Find<QCheckBox>("ignoreTransparency").click();
  EXPECT_NE(Shown().picture.rgba, plain);
  Key(Qt::Key_D, Qt::ControlModifier);
  EXPECT_TRUE(Shown().options.automaticClut);
}

}  // namespace
}  // namespace quillomar::test
