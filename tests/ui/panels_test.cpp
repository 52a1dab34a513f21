// The panels for place, borders and timing.

#include <QAbstractButton>
#include <QComboBox>
#include <QSlider>
#include <QSpinBox>

#include "settings/preferences.h"
#include "ui/window_test.h"
#include "ui/zoom_window.h"

namespace quillomar::test {
namespace {

class PanelsTest : public WindowTest {
 protected:
  void Click(const char* name) {
    auto& button = Find<QAbstractButton>(name);
    EXPECT_TRUE(button.isEnabled()) << name;
    QTest::mouseClick(&button, Qt::LeftButton);
  }
  void Type(const char* name, const QString& number) {
    auto& box = Find<QSpinBox>(name);
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, number);
    Key(Qt::Key_Return);
  }
  void Choose(const char* name, Qt::Key key) {
    Find<QComboBox>(name).setFocus();
    Key(key);
  }
  bool Enabled(const char* name) { return Find<QWidget>(name).isEnabled(); }
  Preferences& Settings() { return TheEditor().Context().preferences; }
  int Top() { return Shown().picture.y; }
};

TEST_F(PanelsTest, MovesFollowButtonsKeysAndNumbers) {
  StartOnDisc();
  const SubpicturePicture found = Shown().picture;
  Click("moveUp");
  EXPECT_EQ(Shown().place.up, 1);
  EXPECT_EQ(Find<QSpinBox>("linesUp").value(), 1);
  Settings().forceEvenMoves = 1;
  Key(Qt::Key_F5);
  Type("linesUp", "-20");
  Key(Qt::Key_Up);
  EXPECT_EQ(Shown().place.up, -18);
  EXPECT_EQ(Top(), found.y + 18);
  Click("moveDown");
  EXPECT_EQ(Shown().place.up, -20);

  Click("moveRight");
  Click("moveRight");
  Click("moveLeft");
  EXPECT_EQ(Shown().picture.x, found.x + 1);
  Type("pixelsRight", "700");
  EXPECT_EQ(Shown().picture.x + Shown().picture.width, kPictureWidth);
  EXPECT_EQ(Find<QSpinBox>("pixelsRight").value(), Shown().place.right);
  EXPECT_TRUE(dialogs_.errors.empty());
}

TEST_F(PanelsTest, BordersComeFromPresetsNumbersAndTheSlider) {
  StartOnDisc();
  auto& presets = Find<QComboBox>("borderPreset");
  EXPECT_EQ(presets.currentText(), "No Vertical Borders");
  EXPECT_FALSE(Enabled("flush"));
  Choose("borderPreset", Qt::Key_Down);
  Choose("borderPreset", Qt::Key_Down);
  EXPECT_EQ(Shown().place.border, Settings().borders[1].ntsc);
  EXPECT_EQ(Find<QSlider>("borderSlider").value(), Settings().borders[1].ntsc);
  Type("border", "33");
  EXPECT_EQ(presets.currentText(), "Custom Vertical Borders");
  Find<QSlider>("borderSlider").setValue(40);
  EXPECT_EQ(Shown().place.border, 40);
  const int top = Top();
  Click("flush");
  EXPECT_GT(Top(), top);
  const int flushed = Top();
  Type("border", "100");
  EXPECT_EQ(Top(), flushed - 60);
}

TEST_F(PanelsTest, MenuButtonsForbidBorders) {
  const DiscCopy menu("menu");
  Start(menu.MenuVobs());
  WaitForIdle();
  ASSERT_TRUE(Shown().hasUnit);
  for (const char* const name : {"borderPreset", "border", "borderSlider", "flush"}) {
    EXPECT_FALSE(Enabled(name)) << name;
  }
  EXPECT_TRUE(Enabled("moveUp"));
  EXPECT_EQ(Find<QSpinBox>("duration").text(), "infinite");
  EXPECT_FALSE(Enabled("infinite"));
}

TEST_F(PanelsTest, NothingCanBeChangedWithoutASubpicture) {
  Start({});
  for (const char* const name : {"moveUp", "pixelsRight", "cropButton", "borderPreset", "duration",
                                 "infinite", "startCommand", "addFade", "hideButton"}) {
    EXPECT_FALSE(Enabled(name)) << name;
  }
}

TEST_F(PanelsTest, DurationsAreSetRemovedAndBroughtBack) {
  StartOnDisc();
  Type("duration", "1203");
  EXPECT_EQ(Shown().time.durationMs, 1201);
  EXPECT_EQ(Find<QSlider>("durationSlider").value(), 1201);
  Type("duration", "999999");
  EXPECT_LE(Shown().time.durationMs, Shown().time.limits->largest);
  Click("infinite");
  EXPECT_EQ(Shown().time.durationMs, -1);
  Type("duration", "2000");
  ASSERT_EQ(dialogs_.questions.size(), 1U);
  EXPECT_EQ(Shown().time.durationMs, -1);
  dialogs_.agrees = true;
  Type("duration", "1500");
  EXPECT_NEAR(Shown().time.durationMs, 1500, 33);
}

TEST_F(PanelsTest, StartFadeAndHide) {
  StartOnDisc();
  Choose("startCommand", Qt::Key_Down);
  EXPECT_TRUE(Shown().time.forced);
  EXPECT_FALSE(Enabled("removeFade"));
  Click("addFade");
  EXPECT_GT(Shown().sequences.size(), 3U);
  EXPECT_FALSE(Enabled("addFade"));
  Click("removeFade");
  EXPECT_EQ(Shown().sequences.size(), 3U);
  Click("hideButton");
  for (const Swatch& swatch : Shown().swatches) EXPECT_EQ(swatch.alpha, 0);
}

TEST_F(PanelsTest, AutomaticColoursCanBeShown) {
  StartOnDisc();
  const auto colours = Shown().picture.rgba;
  Choose("clutChoice", Qt::Key_Down);
  EXPECT_NE(Shown().picture.rgba, colours);
  EXPECT_FALSE(Enabled("swatch1"));
  Choose("clutChoice", Qt::Key_Up);
  EXPECT_EQ(Shown().picture.rgba, colours);
}

TEST_F(PanelsTest, TheZoomWindowFollowsTheSubpictureAndTheSetting) {
  StartOnDisc();
  auto& zoom = Find<ZoomWindow>("zoomWindow");
  EXPECT_FALSE(zoom.isVisible());
  Find<QComboBox>("zoom").setCurrentText("Zoom x4");
  EXPECT_TRUE(zoom.isVisible());
  const auto& canvas = *zoom.findChild<ZoomCanvas*>();
  EXPECT_EQ(canvas.width(), Shown().picture.width * 4);
  Key(Qt::Key_End);
  EXPECT_EQ(canvas.height(), Shown().picture.height * 4);
  zoom.move(70, 90);
  zoom.close();
  EXPECT_EQ(Find<QComboBox>("zoom").currentIndex(), 0);
  Window().close();
  const Bytes settings = FileBytes(SettingsPath());
  EXPECT_NE(std::string(settings.begin(), settings.end()).find("ZoomWindowPos=70 90 "),
            std::string::npos);
}

}  // namespace
}  // namespace quillomar::test
