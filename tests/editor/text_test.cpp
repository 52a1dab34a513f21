#include <gtest/gtest.h>

#include "editor/info_text.h"
#include "editor/screen_mode.h"
#include "editor/time_code.h"
#include "editor/view_builder.h"

namespace quillomar {
namespace {

TEST(TimeCode, CountsNtscSecondsAs90090TicksAndTruncates) {
  EXPECT_EQ(FormatSrtTimeLine(90090, -1, VideoStandard::kNtsc), "00:00:01,000 --> ?");
  EXPECT_EQ(FormatSrtTimeLine(90000 * 3723LL + 179964, 1500, VideoStandard::kPal),
            "01:02:04,999 --> 01:02:06,499");
  EXPECT_EQ(FormatSrtTimeLine(0, 40, VideoStandard::kPal), "00:00:00,000 --> 00:00:00,039");
  EXPECT_EQ(TicksToMs(90089, VideoStandard::kNtsc), 999);
}

SubpictureUnit UnitWithOneCommand(std::uint32_t code) {
  SubpictureUnit unit;
  unit.complete = true;
  unit.number = 7;
  unit.numberInStream = 3;
  unit.stream = 1;
  unit.vcid = {2, 5};
  unit.state.pts = 180000;
  unit.globalTime = 90000;
  unit.packs = {{0, 10, 1234}};
  ControlSequence sequence;
  sequence.commands.push_back({code, 24, 0, {}});
  unit.state.sequences.push_back(sequence);
  return unit;
}

TEST(InfoText, IsTheRichTextOfThePane) {
  SubpictureUnit unit = UnitWithOneCommand(kStart);
  const std::string rtf = InfoRtf(unit, VideoStandard::kPal);
  const std::string prolog =
      "{\\rtf1\\ansi\\deff0\\deftab720{\\fonttbl{\\f0\\froman Tahoma;}}\n"
      "{\\colortbl\\red0\\green0\\blue0;\\red255\\green0\\blue0;\\red0\\green134\\blue37;"
      "\\red0\\green0\\blue255;}\n\\deflang1033\\pard\\tx360\\tx720";
  EXPECT_EQ(rtf.substr(0, prolog.size()), prolog);
  const std::string body =
      "\\tx6120\\tx6480\\plain\\f3\\fs20 "
      "\\cf3 \\fs16\\b\\ul Subpic# = 7 (3 in stream)\\b0\\ul0\n\\par "
      "\\cf3 StreamID = 0x21\n\\par "
      "\\cf3 LBA = 1234\n\\par "
      "\\cf3 V/CID = 2/5\n\\par "
      "\\cf3 PTS = 180000\n\\par "
      "\\cf3 Duration = infinite\n\\par "
      "\\cf3 TimeCode: 00:00:01,000 --> ?\n\\par "
      "{\\ul\\cf1 DCSQT: 0\n}\\par "
      "\\cf0   Start\n\\par \n\\par }";
  ASSERT_GT(rtf.size(), body.size());
  EXPECT_EQ(rtf.substr(rtf.size() - body.size()), body);

  unit.state.modified = true;
  EXPECT_NE(InfoRtf(unit, VideoStandard::kPal).find("\\cf2 Modified\n\\par "), std::string::npos);
  EXPECT_EQ(InfoPlainText(unit, VideoStandard::kPal).substr(0, 45),
            "Subpic# = 7 (3 in stream)\nStreamID = 0x21\nLBA");
}

TEST(DisplayModes, AreNamedAndTold4x3Only) {
  EXPECT_EQ(DisplayModeNames(kModeWide | kModeLetterbox), "WS+LB");
  EXPECT_EQ(DisplayModeNames(kMode4x3 | kModePanScan), "4:3+P&S");
  CellEntry cell;
  EXPECT_FALSE(OnlyFor4x3(cell));
  cell.subpictures[0].modes = kMode4x3;
  EXPECT_TRUE(OnlyFor4x3(cell));
  cell.subpictures[4].modes = kModeWide;
  EXPECT_FALSE(OnlyFor4x3(cell));
}

TEST(ScreenModes, FollowTheStreamOnlyWhereItLacksThePresentOne) {
  constexpr std::uint8_t kWideAndLetterbox = 0b0110;
  EXPECT_EQ(FittingMode(ScreenMode::kLetterbox, kWideAndLetterbox), ScreenMode::kLetterbox);
  EXPECT_EQ(FittingMode(ScreenMode::kPanScan, kWideAndLetterbox), ScreenMode::kWide);
  EXPECT_EQ(FittingMode(ScreenMode::kWide, 0b1000), ScreenMode::kPanScan);
  EXPECT_EQ(FittingMode(ScreenMode::kWide, 0), ScreenMode::kWide);
  EXPECT_DOUBLE_EQ(PlaceOfVideo(ScreenMode::kLetterbox).top * 480, 60);
  EXPECT_DOUBLE_EQ(PlaceOfVideo(ScreenMode::kPanScan).width * 720, 540);
}

}  // namespace
}  // namespace quillomar
