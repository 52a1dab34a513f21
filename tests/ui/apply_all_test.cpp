// Applying the last modifications to all selected subpictures through the dialog.

#include <QCheckBox>
#include <QComboBox>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>

#include "spu/parse.h"
#include "ui/apply_all_dialog.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class ApplyAllTest : public WindowTest {
 protected:
  // Opens the dialog by the window's button and has `use` work it; it must be closed afterwards.
  void WithDialog(const std::function<void(ApplyAllDialog&)>& use) {
    auto& dialog = Find<ApplyAllDialog>("applyAll");
    bool used = false;
    QTimer::singleShot(0, [&] {
      use(dialog);
      used = true;
      EXPECT_FALSE(dialog.isVisible());
      dialog.hide();
    });
    Press("applyToAllButton");
    EXPECT_TRUE(used);
    WaitForIdle();
  }

  void Press(const char* name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }
  int Duration(const SubpictureUnit& unit) {
    return DurationMs(unit, TheEditor().Doc().Standard());
  }
  bool CanTick(const char* name) { return Find<QCheckBox>(name).isEnabled(); }
};

TEST_F(ApplyAllTest, OnlyWhatWasChangedIsOfferedAndOnlyWhatIsTickedIsApplied) {
  StartOnDisc();
  TheEditor().SetForced(true);
  TheEditor().SetDuration(1500);
  const auto units = TheEditor().List().List();
  std::vector<int> before;
  for (const auto& unit : units) before.push_back(Duration(*unit));
  ASSERT_GT(std::count_if(before.begin(), before.end(), [](int ms) { return ms > 800; }), 2);
  WithDialog([this](ApplyAllDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Apply modifications to all selected SPU");
    EXPECT_TRUE(CanTick("applyStart") && CanTick("applyDurations"));
    EXPECT_FALSE(CanTick("applyVertical") || CanTick("applyBorders") || CanTick("applyHide"));
    EXPECT_EQ(Find<QSpinBox>("applyDurationMs").value(), 1500);
    EXPECT_FALSE(Find<QSpinBox>("applyDurationMs").isEnabled());
    EXPECT_FALSE(Find<QAbstractButton>("applyAllDoIt").isEnabled());
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(Find<QCheckBox>("applyStart").isChecked());
    dialog.move(60, 40);
    Press("applyAllCancel");
  });
  EXPECT_FALSE(IsForced(*units.back()));

  WithDialog([this](ApplyAllDialog&) {
    EXPECT_FALSE(Find<QCheckBox>("applyStart").isChecked());
    Find<QCheckBox>("applyDurations").setChecked(true);
    Find<QSpinBox>("applyDurationMs").setValue(700);
    Find<QComboBox>("applyDurationMode").setCurrentIndex(2);
    Press("applyAllDoIt");
  });
  // What is shorter, or has no end, stays as it is.
  for (std::size_t i = 0; i < units.size(); ++i) {
    EXPECT_NEAR(Duration(*units[i]), std::min(before[i], 700), 20) << i;
  }
  EXPECT_FALSE(IsForced(*units.back()));

  dialogs_.agrees = true;
  Window().close();
  const Bytes settings = FileBytes(SettingsPath());
  EXPECT_NE(std::string(settings.begin(), settings.end()).find("ApplyAllWindowPos=60 40 "),
            std::string::npos);
}

}  // namespace
}  // namespace quillomar::test
