#include <gtest/gtest.h>

#include "ocr/diagonal_gaps.h"
#include "ocr/recognised_text.h"
#include "ocr/text_roles.h"
#include "ocr_fixture.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

using test::DrawBlocks;

class ReadingTest : public test::OcrTest {
 protected:
  TextRoles RolesOf(const std::vector<std::string>& rows) {
    SubpictureUnit unit = Unit(rows);
    EXPECT_FALSE(Failed(DecodeBitmap(unit, context_)));
    FindTextRoles(unit);
    return unit.textRoles;
  }
};

TEST_F(ReadingTest, TextTypeIsTheOneThatTheOthersEnclose) {
  // One type alone; an outline around one other; soft edges (2) around strokes (3) in an outline.
  EXPECT_EQ(RolesOf({"00000", "01110", "01110", "00000"}), (TextRoles{1, 2, 3}));
  EXPECT_EQ(RolesOf({"00000", "02220", "02320", "00000"}), (TextRoles{3, 2, 1}));
  EXPECT_EQ(RolesOf({"000000000", "011111110", "012332110", "012332110", "011111110"}),
            (TextRoles{3, 1, 2}));
  // A run that the other type follows again is no enclosure, and one that outline parts is none.
  EXPECT_EQ(RolesOf({"000000000", "011111110", "012323110", "012132110", "011111110"}).textType,
            kUnknownType);
  // Of two enclosed types the product with the pixels counts; the lower wins a tie.
  EXPECT_EQ(RolesOf({"00000000000", "11111111111", "12332132231", "11111111111"}).textType, 2);
}

TEST_F(ReadingTest, RolesStayWhereTheRowBelowTheFirstIsBlank) {
  SubpictureUnit unit = Unit({"0100", "0000", "0020"});
  ASSERT_FALSE(Failed(DecodeBitmap(unit, context_)));
  unit.textRoles = {2, 1, 3};
  FindTextRoles(unit);
  EXPECT_EQ(unit.textRoles, (TextRoles{2, 1, 3}));
  unit.highlight.buttons.emplace_back();
  unit.state.statistics.backgroundType = 1;
  FindTextRoles(unit);
  EXPECT_EQ(unit.textRoles, (TextRoles{0, 2, 3}));
}

TEST_F(ReadingTest, GapsOfDiagonalStepsAreFilled) {
  const auto fill = [](std::string pixels, int replacement) {
    Bytes bytes(pixels.begin(), pixels.end());
    for (auto& each : bytes) each = static_cast<std::uint8_t>(each - '0');
    FillDiagonalGaps(bytes, 6, 4, 3, 0, replacement);
    for (auto& each : bytes) each = static_cast<std::uint8_t>(each + '0');
    return std::string(bytes.begin(), bytes.end());
  };
  const std::string step =
      "000300"
      "001100"
      "003000"
      "000000";
  EXPECT_EQ(fill(step, 255), "000300001300003000000000");
  EXPECT_EQ(fill(step, 2), "000300001200003000000000");
  // A background pixel stays, and one whose step has text on both sides below.
  EXPECT_EQ(fill("000300000000003000000000", 255), "000300000000003000000000");
  EXPECT_EQ(fill("000300001100003300000000", 255), "000300001100003300000000");
}

TEST_F(ReadingTest, PictureHasTextInkAndAWhiteMargin) {
  SubpictureUnit unit = Unit({"00000", "02220", "02320", "02220", "00000"});
  const auto picture = TakeTextPicture(unit, Tools())->Unpack();
  EXPECT_EQ(picture.width, 5 + 30);
  EXPECT_EQ(picture.height, 2);  // the last row of the content is left out
  EXPECT_EQ(std::count(picture.grey.begin(), picture.grey.end(), 0), 1);
  EXPECT_EQ(picture.grey[35 + 2], 0);
  EXPECT_EQ(picture.language, "en");
  EXPECT_TRUE(unit.pixels.empty());
}

TEST_F(ReadingTest, BoxesCarryTheirLineAndStandInTheBitmap) {
  SubpictureUnit unit = TextUnit({"A?", "B a"}, 0);
  RunOcr(unit, Tools());
  EXPECT_EQ(unit.ocrText, (std::vector<std::string>{"A_", "B a"}));
  ASSERT_EQ(unit.charBoxCount, 7);
  EXPECT_EQ(unit.charBoxes[1].ch, U'_');
  const CharBox& space = unit.charBoxes[4];
  EXPECT_EQ(space.ch, U' ');
  EXPECT_EQ(space.x0, unit.charBoxes[3].x1 + 3);
  EXPECT_EQ(space.x1, unit.charBoxes[5].x0 - 3);
  EXPECT_EQ(unit.charBoxes[0].y0, 4);
  EXPECT_EQ(space.line, 1);
  EXPECT_EQ(space.y0, 4 + test::kBlockPitch);
  EXPECT_EQ(space.lineRefRow, 4 + test::kBlockPitch + test::kBlockHeight - 1);
}

TEST_F(ReadingTest, NarrowSpacesKeepTheirMiddleAndLinesTheirLimits) {
  SubpictureUnit unit;
  unit.state.statistics.box = {0, 10, 9, 19};
  EngineResult result;
  result.boxes = {{4, 5, 0, 5, U' ', false}, {0, 0, 0, 0, U'\n', false}, {1, 2, 3, 4, 0, true}};
  result.lines.assign(40, {std::string(200, 'x'), 2, 0.25F});
  TakeRecognisedText(unit, result);
  EXPECT_EQ(unit.charBoxes[0].x0, 4);
  EXPECT_EQ(unit.charBoxes[0].x1, 4);
  EXPECT_EQ(unit.charBoxes[2], (CharBox{1, 2, 13, 14, U'_', 1, 12, 0.25F, true}));
  EXPECT_EQ(unit.ocrText, std::vector<std::string>(32, std::string(127, 'x')));
  result.lines[1].text.clear();
  TakeRecognisedText(unit, result);
  EXPECT_EQ(unit.ocrText.size(), 1U);
}

TEST_F(ReadingTest, MusicNotesAreSpeltWhereTheyWereSeen) {
  const auto boxes = [](const std::u32string& text) {
    std::vector<CharBox> found(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) found[i].ch = text[i];
    return found;
  };
  EXPECT_EQ(SpellMusicNotes(".'\xC3\xA9 .'", boxes(U"#\u00E9 #")), "# \xC3\xA9 # ");
  EXPECT_EQ(SpellMusicNotes("'No.'", boxes(U"'No.'")), "'No.'");
  EXPECT_EQ(SpellMusicNotes(".''.'", boxes(U"#'#")), ".''.'");
  EXPECT_EQ(SpellMusicNotes("# a", boxes(U"# a")), "# a");
}

TEST_F(ReadingTest, TextTypeIsRememberedInTheOrderOfTheList) {
  const std::vector<std::string> unknown = {"000000000", "011111110", "012323110", "012132110",
                                            "011111110"};
  SubpictureUnit first = Unit(unknown);
  SubpictureUnit known = TextUnit({"A"});
  SubpictureUnit last = Unit(unknown);
  first.ocrText = {"old"};
  const auto go = [](std::size_t, std::size_t) { return true; };
  RunOcrOnAll(std::vector<SubpictureUnit*>{&first, &known, &last}, Tools(), go);
  EXPECT_EQ(first.ocrText, std::vector<std::string>{"old"});
  EXPECT_EQ(first.charBoxCount, 0);
  EXPECT_EQ(known.ocrText, std::vector<std::string>{"A"});
  EXPECT_EQ(remembered_, 1);
  EXPECT_EQ(engine_.picturesRead, 2);
}

TEST_F(ReadingTest, StoppedRunKeepsWhatWasReadAndTheFirstTextStays) {
  SubpictureUnit one = TextUnit({"A"});
  SubpictureUnit two = TextUnit({"B"});
  const auto once = [](std::size_t done, std::size_t) { return done < 1; };
  RunOcrOnAll(std::vector<SubpictureUnit*>{&one, &two}, Tools(), once);
  EXPECT_EQ(one.ocrText, std::vector<std::string>{"A"});
  EXPECT_TRUE(two.ocrText.empty());
  one.savedOcrText = {"was"};
  RunOcr(one, Tools());
  EXPECT_EQ(one.savedOcrText, std::vector<std::string>{"was"});
}

TEST_F(ReadingTest, ForcedMenusAreLeftAlone) {
  SubpictureUnit unit = TextUnit({"A"});
  unit.highlight.buttons.emplace_back();
  EXPECT_TRUE(TakeTextPicture(unit, Tools()));
  unit.state.sequences[0].commands[0].code = kForcedStart;
  RunOcr(unit, Tools());
  EXPECT_EQ(engine_.picturesRead, 0);
}

}  // namespace
}  // namespace quillomar
