// Moving subpictures in time through the window.

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QSlider>
#include <QTimer>

#include "ui/progress_window.h"
#include "ui/retime_dialog.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

constexpr const char* kNoUndo =
    "There is NO undo for this\nThe VOB file will be modified. Proceed?";

class RetimeTest : public WindowTest {
 protected:
  // Opens the dialog by one of the window's buttons and has `use` work it; the job it starts goes
  // on.
  void WithDialog(const char* button, const std::function<void(RetimeDialog&)>& use) {
    auto& dialog = Find<RetimeDialog>("retime");
    bool used = false;
    QTimer::singleShot(0, [&] {
      use(dialog);
      used = true;
      dialog.hide();
    });
    Press(button);
    EXPECT_TRUE(used);
  }
  void MoveAll(double seconds) {
    WithDialog("retimeAllButton", [&](RetimeDialog& dialog) {
      EXPECT_EQ(dialog.windowTitle(), "Change timing for all selected subpics");
      Find<QDoubleSpinBox>("retimeSeconds").setValue(seconds);
      Press("retimeOk");
    });
  }
  void Press(const char* name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }

  void StartOnDisc() {
    WindowTest::StartOnDisc();
    if (!HasFatalFailure()) units_ = TheEditor().Doc().Units();
  }
  // By unit as the first scan found them; a retiming may change their order.
  std::vector<std::uint32_t> Times() {
    std::vector<std::uint32_t> times;
    for (const auto& unit : units_) times.push_back(unit->state.pts);
    return times;
  }
  long Warnings() {
    return std::count(dialogs_.questions.begin(), dialogs_.questions.end(), kNoUndo);
  }

  UnitList units_;
};

TEST_F(RetimeTest, TheCurrentOneBySlider) {
  StartOnDisc();
  TheEditor().Context().preferences.retimingSliderRange = 2.5F;
  TheEditor().GoTo(3);
  const auto before = Times();
  const std::string info = Shown().infoRtf;
  dialogs_.agrees = true;
  WithDialog("retimeButton", [this](RetimeDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Change timing for the current subpic");
    EXPECT_EQ(Find<QDoubleSpinBox>("retimeSeconds").maximum(), 2.5);
    EXPECT_EQ(Find<QSlider>("retimeSlider").minimum(), -75);
    Find<QSlider>("retimeSlider").setValue(-1);
    EXPECT_EQ(Find<QLabel>("retimeFrames").text(), "Starts 1 frame earlier");
    Press("retimeOk");
  });
  WaitForIdle();
  auto expected = before;
  expected[3] -= 3003;
  EXPECT_EQ(Times(), expected);
  EXPECT_EQ(TheEditor().List().Current(), units_[3]);
  EXPECT_NE(Shown().infoRtf, info);

  WithDialog("retimeButton", [this](RetimeDialog&) {
    EXPECT_EQ(Find<QSlider>("retimeSlider").value(), 0);
    Find<QDoubleSpinBox>("retimeSeconds").setValue(0.04);
    Press("retimeCancel");
  });
  EXPECT_FALSE(TheEditor().Busy());
  EXPECT_EQ(Times(), expected);
}

TEST_F(RetimeTest, AllOfThemAfterOneWarning) {
  StartOnDisc();
  const auto before = Times();
  MoveAll(2);
  EXPECT_EQ(Warnings(), 1);
  EXPECT_FALSE(TheEditor().Busy());
  EXPECT_EQ(Times(), before);

  dialogs_.agrees = true;
  files_.gate.Close();
  MoveAll(2);
  ASSERT_TRUE(TheEditor().Busy());
  EXPECT_EQ(TheEditor().JobLabel(), "Re-timing");
  EXPECT_EQ(Find<ProgressWindow>("progressWindow").windowTitle(), "ReTiming subpics");
  EXPECT_FALSE(Find<QAbstractButton>("retimeAllButton").isEnabled());
  files_.gate.Open();
  WaitForIdle();
  EXPECT_EQ(Warnings(), 1);
  EXPECT_EQ(dialogs_.errors, std::vector<std::string>());
  const auto after = Times();
  for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(after[i], before[i] + 180'180) << i;
  const std::string shown = "PTS = " + std::to_string(TheEditor().List().Current()->state.pts);
  EXPECT_NE(Shown().infoRtf.find(shown), std::string::npos);
}

TEST_F(RetimeTest, EscapeStopsBetweenTwoOfThem) {
  StartOnDisc();
  const auto before = Times();
  dialogs_.agrees = true;
  files_.gate.Close();
  MoveAll(2);
  // The last of the list goes first.
  WaitFor(
      [this] { return TheEditor().Context().reporter.StatusText().rfind("Moving spu", 0) == 0; });
  Key(Qt::Key_Escape);
  files_.gate.Open();
  WaitForIdle();
  const auto after = Times();
  EXPECT_EQ(after.back(), before.back() + 180'180);
  for (std::size_t i = 0; i + 1 < before.size(); ++i) EXPECT_EQ(after[i], before[i]) << i;
}

TEST_F(RetimeTest, OnlyForAWholeDomainScannedToItsEnd) {
  StartOnDisc();
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
  WaitForIdle();
  ASSERT_TRUE(TheEditor().Doc().InSupMode());
  Press("retimeAllButton");
  EXPECT_EQ(dialogs_.errors.back(), refusal);
}

}  // namespace
}  // namespace quillomar::test
