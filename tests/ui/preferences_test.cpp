// The preferences dialog: what OK, a refused OK and Cancel leave behind.

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QTimer>

#include "ui/preferences_dialog.h"
#include "ui/swatch_button.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class PreferencesTest : public WindowTest {
 protected:
  Preferences& Settings() { return TheEditor().Context().preferences; }

  // Opens the dialog by its command and has `use` work it; it must be closed afterwards.
  void WithDialog(const std::function<void(PreferencesDialog&)>& use) {
    auto& dialog = Find<PreferencesDialog>("preferences");
    bool used = false;
    QTimer::singleShot(0, [&] {
      use(dialog);
      used = true;
      EXPECT_FALSE(dialog.isVisible());
      dialog.hide();
    });
    TheEditor().Run(CommandId::kPreferences);
    EXPECT_TRUE(used);
  }

  void Press(const char* name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }
  void Enter(const char* name, const std::string& text) {
    Find<QLineEdit>(name).setText(QString::fromStdString(text));
  }
  std::string SavedSettings() {
    const Bytes bytes = FileBytes(SettingsPath());
    return {bytes.begin(), bytes.end()};
  }
};

TEST_F(PreferencesTest, OkTakesEveryKindOfField) {
  Start({});
  WithDialog([this](PreferencesDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Preferences");
    EXPECT_TRUE(Find<QCheckBox>("askForIfos").isChecked());
    Press("askForIfos");
    Find<QComboBox>("wordSpacing").setCurrentIndex(3);
    Enter("cropBorderX", "-4");
    Enter("cropBorderY", "none");
    Enter("retimingRange", "2.5");
    dialogs_.files = {disc_->Folder()};
    Press("browseTool");
    EXPECT_EQ(dialogs_.requests.back().title, "Select bitmap (.BMP) editing tool");
    Enter("toolArguments", "-a \"b c\"");
    dialogs_.colour = Rgb{1, 2, 3};
    Press("backgroundColor");
    Press("preferencesOk");
  });
  EXPECT_EQ(Settings().cropBorderY, 1);
  Window().close();
  for (const char* const line :
       {"AskForIFOs=0\n", "OCRSpaceSelect=3\n", "CropBackgroundBorderX=-4\n",
        "RetimingSliderRange=2.5", "DefaultBackgdColor=197121\n", "BMPEditPathArgs=-a \"b c\""}) {
    EXPECT_NE(SavedSettings().find(line), std::string::npos) << line;
  }
  EXPECT_NE(SavedSettings().find("BMPEditPath=" + disc_->Folder()), std::string::npos);
}

TEST_F(PreferencesTest, ARefusedOkLeavesItsValuesAndCancelTheColourAsItWas) {
  Start({});
  WithDialog([this](PreferencesDialog& dialog) {
    dialogs_.colour = Rgb{200, 10, 20};
    Press("backgroundColor");
    EXPECT_EQ(Settings().backgroundColour, 0x140AC8);
    const QImage preview = Find<QWidget>("pictureView").grab().toImage();
    EXPECT_EQ(preview.pixelColor(preview.rect().center()), QColor(200, 10, 20));
    Press("italics");
    Enter("toolPath", disc_->Path("nowhere"));
    Press("preferencesOk");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialogs_.errors,
              std::vector<std::string>{
                  "The path you've indicated for the bitmap edit tool does not exist.\n"
                  "Leave it empty or set it to an existing app"});
    Press("caseSensitive");
    Press("preferencesCancel");
  });
  EXPECT_EQ(Settings().backgroundColour, 0x323232);
  EXPECT_EQ(Settings().ocrItalics, 0);
  EXPECT_EQ(Settings().ocrCaseSensitive, 0);
  EXPECT_EQ(Settings().bitmapToolPath, disc_->Path("nowhere"));
  const QImage after = Find<QWidget>("pictureView").grab().toImage();
  EXPECT_EQ(after.pixelColor(after.rect().center()), QColor(0x32, 0x32, 0x32));
}

TEST_F(PreferencesTest, WithoutAToolTheExternalEditorAsksForOne) {
  StartOnDisc();
  QTimer::singleShot(0, [this] { Press("preferencesCancel"); });
  TheEditor().Run(CommandId::kEditBitmap);
  EXPECT_EQ(
      dialogs_.errors,
      std::vector<std::string>{"You haven't indicated which tool to use to edit the subpic bitmap\n"
                               "I will open the preference dialog to let you do that"});
}

}  // namespace
}  // namespace quillomar::test
