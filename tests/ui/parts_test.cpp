// Parts of the window by themselves.

#include <gtest/gtest.h>

#include <QImage>

#include "ui/file_filter.h"
#include "ui/info_pane.h"
#include "ui/picture_view.h"
#include "ui/rtf_reader.h"

namespace quillomar::test {
namespace {

TEST(RtfReader, ReadsColoursTabsFormatsAndEscapes) {
  const RtfDocument document = ReadRtf(
      "{\\rtf1\\ansi{\\fonttbl{\\f0\\froman Tahoma;}}\n"
      "{\\colortbl\\red0\\green0\\blue0;\\red255\\green0\\blue0;}\n"
      "\\pard\\tx360\\tx720\\plain\\f3\\fs20 \\cf1 \\fs16\\b\\ul Head\\b0\\ul0\n\\par "
      "{\\ul\\cf0 a\\{b\\}\\\\c\\'e9}\\tab d\\par \n\\par }");
  ASSERT_EQ(document.colours.size(), 2U);
  EXPECT_EQ(document.colours[1], QColor(255, 0, 0));
  EXPECT_EQ(document.tabStops, (std::vector<int>{360, 720}));
  ASSERT_EQ(document.paragraphs.size(), 2U);
  const RtfRun& head = document.paragraphs[0][0];
  EXPECT_EQ(head.text, "Head");
  EXPECT_EQ(head.format, (RtfFormat{1, true, true, 16}));
  const RtfParagraph& second = document.paragraphs[1];
  ASSERT_EQ(second.size(), 2U);
  EXPECT_EQ(second[0].text, QString::fromUtf8("a{b}\\c\xC3\xA9"));
  EXPECT_EQ(second[0].format, (RtfFormat{0, false, true, 16}));
  EXPECT_EQ(second[1].text, "\td");
  EXPECT_EQ(second[1].format, (RtfFormat{1, false, false, 16}));
}

TEST(InfoPane, ColoursStayReadableOnDarkAndLight) {
  const QColor blue(0, 0, 255);
  QPalette palette;
  palette.setColor(QPalette::Base, Qt::white);
  EXPECT_EQ(ReadableOn(palette, blue), blue);
  EXPECT_EQ(ReadableOn(palette, QColor(255, 0, 0)), QColor(255, 0, 0));
  palette.setColor(QPalette::Base, QColor(30, 30, 30));
  palette.setColor(QPalette::Text, QColor(230, 231, 232));
  const QColor onDark = ReadableOn(palette, blue);
  EXPECT_EQ(onDark.hslHue(), blue.hslHue());
  EXPECT_GT(qGray(onDark.rgb()), 100);
  EXPECT_EQ(ReadableOn(palette, Qt::black), QColor(230, 231, 232));
}

TEST(FileFilter, LabelsAndPatternsByTurns) {
  EXPECT_EQ(NameFilters("VOB Files (*.vob)|*.vob||"), QStringList{"VOB Files (*.vob)"});
  EXPECT_EQ(NameFilters("bmp Files|*.bmp|ppm Files (*.ppm)|*.ppm||"),
            (QStringList{"bmp Files (*.bmp)", "ppm Files (*.ppm)"}));
  EXPECT_TRUE(NameFilters("").isEmpty());
}

// A red subpicture of one block of pixels, half transparent, on a blue frame.
View BlockView(ScreenMode mode) {
  View view;
  view.hasUnit = true;
  view.standard = VideoStandard::kPal;
  view.screenMode = mode;
  view.picture = {360, 288, 72, 58, {}};
  for (int i = 0; i < 72 * 58; ++i) {
    view.picture.rgba.insert(view.picture.rgba.end(), {255, 0, 0, 136});
  }
  return view;
}

TEST(PictureView, ShowsTheSubpictureAtItsPlaceInTheRightAspect) {
  PictureView picture;
  picture.SetBackground({0, 0, 255});
  picture.resize(1024, 768);
  picture.Show(BlockView(ScreenMode::k4x3));
  EXPECT_EQ(picture.FrameRect(), QRectF(0, 0, 1024, 768));
  const QImage image = picture.grab().toImage();
  EXPECT_EQ(image.pixelColor(500, 400), QColor(0, 0, 255));
  EXPECT_EQ(image.pixelColor(560, 420), QColor(136, 0, 119));
  EXPECT_EQ(image.pixelColor(620, 420), QColor(0, 0, 255));

  picture.Show(BlockView(ScreenMode::kWide));
  EXPECT_EQ(picture.FrameRect(), QRectF(0, 96, 1024, 576));
  const QImage wide = picture.grab().toImage();
  EXPECT_EQ(wide.pixelColor(560, 96 + 310), QColor(136, 0, 119));
  EXPECT_NE(wide.pixelColor(560, 50), QColor(0, 0, 255));
}

}  // namespace
}  // namespace quillomar::test
