// The dialogs for applying to all, for preferences and for start times.

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>

#include "spu/parse.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

constexpr const char* kNoUndo =
    "There is NO undo for this\nThe VOB file will be modified. Proceed?";

class DialogsTest : public WindowTest {
 protected:
  int Duration(const SubpictureUnit& unit) {
    return DurationMs(unit, TheEditor().Doc().Standard());
  }
  bool CanTick(const char* name) { return Find<QCheckBox>(name).isEnabled(); }
  void Enter(const char* name, const std::string& text) {
    Find<QLineEdit>(name).setText(QString::fromStdString(text));
  }
  void WithPreferences(const std::function<void(QDialog&)>& use) {
    WithDialog(
        "preferences", [this] { TheEditor().Run(CommandId::kPreferences); }, use);
  }
  void WithRetiming(const char* button, const std::function<void(QDialog&)>& use) {
    WithDialog(
        "retime", [&] { Press(button); }, use);
  }
  void MoveAll(double seconds) {
    WithRetiming("retimeAllButton", [&](QDialog& dialog) {
      EXPECT_EQ(dialog.windowTitle(), "Change timing for all selected subpics");
      Find<QDoubleSpinBox>("retimeSeconds").setValue(seconds);
      Press("retimeOk");
    });
  }
  QColor Middle() {
    const QImage picture = Find<QWidget>("pictureView").grab().toImage();
    return picture.pixelColor(picture.rect().center());
  }
};

TEST_F(DialogsTest, OnlyWhatWasChangedIsOfferedAndOnlyWhatIsTickedIsApplied) {
  StartOnDisc();
  TheEditor().SetForced(true);
  TheEditor().SetDuration(1500);
  const auto units = TheEditor().List().List();
  std::vector<int> before;
  for (const auto& unit : units) before.push_back(Duration(*unit));
  ASSERT_GT(std::count_if(before.begin(), before.end(), [](int ms) { return ms > 800; }), 2);
  const auto open = [this] { Press("applyToAllButton"); };
  WithDialog("applyAll", open, [this](QDialog& dialog) {
    EXPECT_TRUE(CanTick("applyStart") && CanTick("applyDurations"));
    EXPECT_FALSE(CanTick("applyVertical") || CanTick("applyBorders") || CanTick("applyHide"));
    EXPECT_EQ(Find<QSpinBox>("applyDurationMs").value(), 1500);
    EXPECT_FALSE(IsEnabled("applyDurationMs") || IsEnabled("applyAllDoIt"));
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(Find<QCheckBox>("applyStart").isChecked());
    dialog.move(60, 40);
    Press("applyAllCancel");
  });
  WithDialog("applyAll", open, [this](QDialog&) {
    EXPECT_FALSE(Find<QCheckBox>("applyStart").isChecked());
    Find<QCheckBox>("applyDurations").setChecked(true);
    Find<QSpinBox>("applyDurationMs").setValue(700);
    Find<QComboBox>("applyDurationMode").setCurrentIndex(2);
    Press("applyAllDoIt");
  });
  WaitForIdle();
  // What is shorter, or has no end, stays as it is.
  for (std::size_t i = 0; i < units.size(); ++i) {
    EXPECT_NEAR(Duration(*units[i]), std::min(before[i], 700), 20) << i;
  }
  EXPECT_FALSE(IsForced(*units.back()));
  dialogs_.agrees = true;
  Window().close();
  EXPECT_TRUE(Saved("ApplyAllWindowPos=60 40 "));
}

TEST_F(DialogsTest, OkTakesEveryKindOfPreference) {
  Start({});
  WithPreferences([this](QDialog&) {
    Press("askForIfos");
    Find<QComboBox>("wordSpacing").setCurrentIndex(3);
    Enter("cropBorderX", "-4");
    Enter("cropBorderY", "none");
    Enter("retimingRange", "2.5");
    dialogs_.files = {disc_->Folder()};
    Press("browseTool");
    Enter("toolArguments", "-a \"b c\"");
    dialogs_.colour = Rgb{1, 2, 3};
    Press("backgroundColor");
    Press("preferencesOk");
  });
  EXPECT_EQ(Settings().cropBorderY, 1);
  Window().close();
  for (const std::string line :
       {"AskForIFOs=0\n", "OCRSpaceSelect=3\n", "CropBackgroundBorderX=-4\n",
        "RetimingSliderRange=2.5", "DefaultBackgdColor=197121\n", "BMPEditPathArgs=-a \"b c\""}) {
    EXPECT_TRUE(Saved(line)) << line;
  }
  EXPECT_TRUE(Saved("BMPEditPath=" + disc_->Folder()));
}

TEST_F(DialogsTest, ARefusedOkLeavesItsValuesAndCancelTheColourAsItWas) {
  StartOnDisc();
  Find<QCheckBox>("showVideo").setChecked(false);
  WithPreferences([this](QDialog& dialog) {
    dialogs_.colour = Rgb{200, 10, 20};
    Press("backgroundColor");
    EXPECT_EQ(Middle(), QColor(200, 10, 20));
    Press("italics");
    Enter("toolPath", disc_->Path("nowhere"));
    Press("preferencesOk");
    EXPECT_TRUE(dialog.isVisible());
    Press("caseSensitive");
    Press("preferencesCancel");
  });
  EXPECT_EQ(Middle(), QColor(0x32, 0x32, 0x32));
  EXPECT_EQ(Settings().ocrItalics, 0);
  EXPECT_EQ(Settings().ocrCaseSensitive, 0);
  EXPECT_EQ(Settings().bitmapToolPath, disc_->Path("nowhere"));
  // Without a tool the external editor asks for one.
  Settings().bitmapToolPath.clear();
  QTimer::singleShot(0, [this] { Press("preferencesCancel"); });
  TheEditor().Run(CommandId::kEditBitmap);
  EXPECT_EQ(dialogs_.errors,
            (std::vector<std::string>{
                "The path you've indicated for the bitmap edit tool does not exist.\n"
                "Leave it empty or set it to an existing app",
                "You haven't indicated which tool to use to edit the subpic bitmap\n"
                "I will open the preference dialog to let you do that"}));
}

class RetimeTest : public DialogsTest {
 protected:
  void SetUp() override {
    DialogsTest::SetUp();
    if (IsSkipped()) return;
    StartOnDisc();
    if (!HasFatalFailure()) units_ = TheEditor().Doc().Units();
  }
  // By unit as the first scan found them; a retiming may change their order.
  std::vector<std::uint32_t> Times() {
    std::vector<std::uint32_t> times;
    for (const auto& unit : units_) times.push_back(unit->state.pts);
    return times;
  }

  UnitList units_;
};

TEST_F(RetimeTest, TheCurrentOneBySlider) {
  Settings().retimingSliderRange = 2.5F;
  TheEditor().GoTo(3);
  auto expected = Times();
  expected[3] -= 3003;
  dialogs_.agrees = true;
  WithRetiming("retimeButton", [this](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Change timing for the current subpic");
    EXPECT_EQ(Find<QDoubleSpinBox>("retimeSeconds").maximum(), 2.5);
    EXPECT_EQ(Find<QSlider>("retimeSlider").minimum(), -75);
    Find<QSlider>("retimeSlider").setValue(-1);
    EXPECT_EQ(Find<QLabel>("retimeFrames").text(), "Starts 1 frame earlier");
    Press("retimeOk");
  });
  WaitForIdle();
  EXPECT_EQ(Times(), expected);
  EXPECT_EQ(TheEditor().List().Current(), units_[3]);
  WithRetiming("retimeButton", [this](QDialog&) {
    EXPECT_EQ(Find<QSlider>("retimeSlider").value(), 0);
    Find<QDoubleSpinBox>("retimeSeconds").setValue(0.04);
    Press("retimeCancel");
  });
  EXPECT_FALSE(TheEditor().Busy());
  EXPECT_EQ(Times(), expected);
}

TEST_F(RetimeTest, AllOfThemAfterOneWarningUntilStopped) {
  const auto before = Times();
  MoveAll(2);
  EXPECT_EQ(dialogs_.questions, std::vector<std::string>{kNoUndo});
  EXPECT_FALSE(TheEditor().Busy());
  EXPECT_EQ(Times(), before);

  dialogs_.agrees = true;
  MoveAll(2);
  WaitForIdle();
  const auto after = Times();
  for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(after[i], before[i] + 180'180) << i;
  // Earlier: the first of the list goes first; the last one is not reached.
  MoveAll(-1);
  ASSERT_TRUE(TheEditor().Busy());
  TheEditor().Run(CommandId::kAbort);
  WaitForIdle();
  EXPECT_EQ(Times().back(), after.back());
  EXPECT_EQ(dialogs_.questions.size(), 1U);
  EXPECT_EQ(dialogs_.errors, std::vector<std::string>());
}

TEST_F(RetimeTest, OnlyForAWholeDomainScannedToItsEnd) {
  const std::string refusal =
      "Retiming subtitles is only possible in the title domain\n"
      "and if the entire domain is loaded.\nNot available for .sup files";
  dialogs_.agrees = true;
  TheEditor().OpenRecent(0);
  WaitForIdle();
  Press("retimeButton");
  EXPECT_EQ(dialogs_.errors.back(), refusal + ", or if you used the MRU list to open the files.");

  TheEditor().ChooseStream(1);
  dialogs_.files = {disc_->Path("one.sup")};
  TheEditor().Run(CommandId::kSaveSup);
  TheEditor().DropFiles(dialogs_.files);
  ASSERT_TRUE(TheEditor().Doc().InSupMode());
  Press("retimeAllButton");
  EXPECT_EQ(dialogs_.errors.back(), refusal);
}

}  // namespace
}  // namespace quillomar::test
