// Changing the look of a subpicture, saving, closing.

#include <QAction>
#include <QComboBox>
#include <QSlider>
#include <QSpinBox>

#include "ui/swatch_button.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

constexpr std::size_t kPattern = 1;

class EditingTest : public WindowTest {
 protected:
  // Changes the colour of the pattern pixels by keys alone: opens the grid of entries, walks one
  // entry on and takes it. Returns the new entry.
  int ChangeColourByKeys() {
    const int before = Shown().swatches[kPattern].clutEntry.value_or(0);
    KeyOn("swatch1", Qt::Key_Return);
    auto& popup = Find<QWidget>("clutPopup");
    EXPECT_TRUE(popup.isVisible());
    QTest::keyClick(popup.focusWidget(), before == 15 ? Qt::Key_Left : Qt::Key_Right);
    QTest::keyClick(popup.focusWidget(), Qt::Key_Return);
    return before == 15 ? 14 : before + 1;
  }
  bool SaysModified() { return Shown().infoRtf.find("Modified") != std::string::npos; }
};

TEST_F(EditingTest, ColourAndTransparencyChangeWithTheControls) {
  StartOnDisc();
  const int entry = ChangeColourByKeys();
  EXPECT_EQ(Shown().swatches[kPattern].clutEntry, entry);
  EXPECT_EQ(Find<SwatchButton>("swatch1").text(), QString::number(entry));
  EXPECT_TRUE(SaysModified());

  Find<QSlider>("transparency").setValue(6);
  EXPECT_EQ(Shown().swatches[kPattern].alpha, 6);
  EXPECT_EQ(Shown().textAlpha, 6);
  Find<QComboBox>("transparencyPixels").setCurrentIndex(1);
  EXPECT_EQ(Find<QSlider>("transparency").value(), Shown().swatches[0].alpha);
  KeyOn("transparency", Qt::Key_PageUp);
  EXPECT_EQ(Shown().swatches[0].alpha, 4);
  EXPECT_EQ(Shown().swatches[kPattern].alpha, 6);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(SaysModified());

  auto& letter = Find<QAbstractButton>("onlyType1");
  const auto all = Shown().picture.rgba;
  letter.click();
  EXPECT_NE(Shown().picture.rgba, all);
  letter.click();
  EXPECT_FALSE(letter.isChecked());
  EXPECT_EQ(Shown().picture.rgba, all);
}

TEST_F(EditingTest, OneKeyTakesAHoldOrAClutEntryBackAndAnotherDoesItAgain) {
  StartOnDisc();
  auto& lines = Find<QSpinBox>("linesUp");
  const int before = lines.value();
  lines.setFocus();
  QTest::keyPress(Window().windowHandle(), Qt::Key_Up);
  lines.stepBy(3);  // as the key repeats
  QTest::keyRelease(Window().windowHandle(), Qt::Key_Up);
  EXPECT_GT(lines.value(), before + 3);
  const int after = lines.value();
  EXPECT_EQ(Find<QAction>("undo").text(), "Undo move (subpic 1) \t(Alt-Backspace)");
  Key(Qt::Key_Backspace, Qt::AltModifier);
  EXPECT_EQ(lines.value(), before);
  EXPECT_FALSE(Find<QAction>("undo").isEnabled());
  Key(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(lines.value(), after);

  dialogs_.colour = Rgb{16, 200, 32};
  const auto colour = Shown().swatches[kPattern].colour;
  QTest::mouseClick(&Find<SwatchButton>("swatch1"), Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(dialogs_.questions, std::vector<std::string>{"Pick color for text pixel. "});
  EXPECT_NE(Shown().swatches[kPattern].colour, colour);
  EXPECT_TRUE(TheEditor().Doc().Modified());
  Key(Qt::Key_Backspace, Qt::AltModifier);
  Key(Qt::Key_Backspace, Qt::AltModifier);
  EXPECT_FALSE(TheEditor().Doc().Modified());
}

TEST_F(EditingTest, UnsavedChangesAskBeforeClosingAndTheWindowComesBackWhereItWas) {
  StartOnDisc();
  ChangeColourByKeys();
  Window().resize(1100, 760);
  Window().close();
  EXPECT_TRUE(Window().isVisible());
  EXPECT_FALSE(Saved("="));
  EXPECT_EQ(
      dialogs_.questions,
      std::vector<std::string>{"You have modified some of the subpics or some of the CLUTs... \n"
                               "Do you want to close without saving?"});
  dialogs_.agrees = true;
  TheEditor().Run(CommandId::kExit);
  EXPECT_FALSE(Window().isVisible());
  program_.reset();
  Start({});
  EXPECT_EQ(Window().size(), QSize(1100, 760));
}

}  // namespace
}  // namespace quillomar::test
