// The panels for place, borders and timing, and the zoom window.

#include <QCheckBox>
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
  int Top() { return Shown().picture.y; }
};

TEST_F(PanelsTest, MovesFollowSlidersKeysAndNumbers) {
  StartOnDisc();
  const SubpicturePicture found = Shown().picture;
  EXPECT_EQ(Find<QSlider>("linesUpSlider").value(), 600);
  KeyOn("linesUpSlider", Qt::Key_Up);
  EXPECT_EQ(Shown().place.up, 1);
  EXPECT_EQ(Find<QSpinBox>("linesUp").value(), 1);
  Settings().forceEvenMoves = 1;
  Key(Qt::Key_F5);
  Type("linesUp", "-20");
  EXPECT_EQ(Find<QSlider>("linesUpSlider").value(), 580);
  Key(Qt::Key_Up);
  EXPECT_EQ(Top(), found.y + 18);
  KeyOn("linesUpSlider", Qt::Key_Down);
  EXPECT_EQ(Shown().place.up, -20);

  Find<QSlider>("pixelsRightSlider").setValue(502);
  EXPECT_EQ(Shown().picture.x, found.x + 2);
  Type("pixelsRight", "700");
  EXPECT_EQ(Shown().picture.x + Shown().picture.width, kPictureWidth);
  EXPECT_EQ(Find<QSpinBox>("pixelsRight").value(), Shown().place.right);
  EXPECT_TRUE(dialogs_.errors.empty());
}

TEST_F(PanelsTest, BordersComeFromPresetsNumbersAndTheSliderAndPull) {
  StartOnDisc();
  auto& presets = Find<QComboBox>("borderPreset");
  EXPECT_EQ(presets.currentText(), "No Vertical Borders");
  const int found = Top();
  KeyOn("borderPreset", Qt::Key_Down);
  KeyOn("borderPreset", Qt::Key_Down);
  EXPECT_EQ(Shown().place.border, Settings().borders[1].ntsc);
  EXPECT_EQ(Find<QSlider>("borderSlider").value(), Settings().borders[1].ntsc);
  Type("border", "33");
  EXPECT_EQ(presets.currentText(), "Custom Vertical Borders");
  Find<QSlider>("borderSlider").setValue(40);
  EXPECT_EQ(Shown().place.border, 40);
  const int top = Top();
  Press("flush");
  const int flushed = Top();
  EXPECT_GT(flushed, top);
  // From here on each border pulls, on other subpictures too, until there is none.
  Type("border", "30");
  EXPECT_EQ(Top(), flushed + 10);
  TheEditor().ApplyToAll(ChoicesOf(TheEditor().Last()));
  WaitForIdle();
  Key(Qt::Key_Right);
  EXPECT_EQ(Shown().place.border, 30);
  EXPECT_TRUE(Find<QCheckBox>("flush").isChecked());
  const int pulled = Top();
  Press("flush");
  Type("border", "20");
  EXPECT_EQ(Top(), pulled);
  Key(Qt::Key_Z, Qt::ControlModifier);
  Press("flush");
  EXPECT_EQ(Shown().place.up, 0);
  Key(Qt::Key_Left);
  EXPECT_NE(Top(), found);
}

TEST_F(PanelsTest, ControlsAreThereForWhatCanBeChangedAlone) {
  Start({});
  for (const char* const name : {"linesUp", "pixelsRight", "cropButton", "borderPreset", "duration",
                                 "infinite", "startCommand", "addFade", "hideButton"}) {
    EXPECT_FALSE(IsEnabled(name)) << name;
  }
  program_.reset();
  const DiscCopy menu("menu");
  Start(menu.MenuVobs());
  WaitForIdle();
  ASSERT_TRUE(Shown().hasUnit);
  for (const char* const name : {"borderPreset", "border", "borderSlider", "flush"}) {
    EXPECT_FALSE(IsEnabled(name)) << name;
  }
  EXPECT_TRUE(IsEnabled("linesUp"));
  EXPECT_EQ(Find<QSpinBox>("duration").text(), "infinite");
  EXPECT_FALSE(IsEnabled("infinite"));
}

TEST_F(PanelsTest, DurationsAreSetRemovedAndBroughtBack) {
  StartOnDisc();
  Type("duration", "1203");
  EXPECT_EQ(Shown().time.durationMs, 1201);
  EXPECT_EQ(Find<QSlider>("durationSlider").value(), 1201);
  Type("duration", "999999");
  EXPECT_LE(Shown().time.durationMs, Shown().time.limits->largest);
  Press("infinite");
  EXPECT_EQ(Shown().time.durationMs, -1);
  Type("duration", "2000");
  EXPECT_EQ(dialogs_.questions.size(), 1U);
  EXPECT_EQ(Shown().time.durationMs, -1);
  dialogs_.agrees = true;
  Type("duration", "1500");
  EXPECT_NEAR(Shown().time.durationMs, 1500, 33);
}

TEST_F(PanelsTest, StartFadeHideAndAutomaticColours) {
  StartOnDisc();
  const auto colours = Shown().picture.rgba;
  KeyOn("clutChoice", Qt::Key_Down);
  EXPECT_NE(Shown().picture.rgba, colours);
  EXPECT_FALSE(IsEnabled("swatch1"));
  KeyOn("clutChoice", Qt::Key_Up);
  EXPECT_EQ(Shown().picture.rgba, colours);
  KeyOn("startCommand", Qt::Key_Down);
  EXPECT_TRUE(Shown().time.forced);
  EXPECT_FALSE(IsEnabled("removeFade"));
  Press("addFade");
  EXPECT_GT(Shown().sequences.size(), 3U);
  EXPECT_FALSE(IsEnabled("addFade"));
  Press("removeFade");
  EXPECT_EQ(Shown().sequences.size(), 3U);
  Press("hideButton");
  for (const Swatch& swatch : Shown().swatches) EXPECT_EQ(swatch.alpha, 0);
}

TEST_F(PanelsTest, TheZoomWindowFollowsTheSubpictureAndTheSetting) {
  StartOnDisc();
  auto& zoom = Find<ZoomWindow>("zoomWindow");
  EXPECT_FALSE(zoom.isVisible());
  Find<QComboBox>("zoom").setCurrentText("Zoom x4");
  const auto& canvas = *zoom.findChild<ZoomCanvas*>();
  EXPECT_EQ(canvas.width(), Shown().picture.width * 4);
  Key(Qt::Key_End);
  EXPECT_EQ(canvas.height(), Shown().picture.height * 4);
  zoom.move(70, 90);
  zoom.close();
  EXPECT_EQ(Find<QComboBox>("zoom").currentIndex(), 0);
  Window().close();
  EXPECT_TRUE(Saved("ZoomWindowPos=70 90 "));
}

}  // namespace
}  // namespace quillomar::test
