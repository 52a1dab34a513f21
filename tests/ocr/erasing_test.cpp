#include <gtest/gtest.h>

#include <regex>

#include "base/utf8.h"
#include "ocr_fixture.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

constexpr HearingBrackets kAllBrackets = {'[', '(', '#', '#', ')', ']'};

// The text with what each range covers in braces.
std::string Marked(const std::string& text, bool speakers) {
  std::vector<CharBox> boxes;
  int line = 0;
  for (const char32_t ch : FromUtf8(text + "\n")) {
    boxes.push_back({});
    boxes.back().ch = ch;
    boxes.back().line = ch == U'\n' ? line++ : line;
  }
  const FoundRanges found =
      speakers ? FindSpeakerLabels(boxes) : FindBracketedText(boxes, kAllBrackets);
  std::u32string marked;
  for (int i = 0; i + 1 < static_cast<int>(boxes.size()); ++i) {
    for (const BoxRange& range : found.ranges) marked += range.first == i ? U"{" : U"";
    marked += boxes[static_cast<std::size_t>(i)].ch;
    for (const BoxRange& range : found.ranges) marked += range.last == i ? U"}" : U"";
  }
  return ToUtf8(marked) + (found.more ? "+" : "");
}

TEST(HearingTextTest, BracketsTakeTheDashLeftAloneAndLabelsAreOneWordOrCapitals) {
  const std::vector<std::string> brackets = {"{[MUSIC]} Hello",      "Hi\n{- (laughs)}",
                                             "{- (laughs)} : #\nHi", "a [b\nc]{ (d)}",
                                             "{(a)} b [c] #d#+",     "{(a] b)} [c"};
  const std::vector<std::string> labels = {
      "{JOHN: }Come here",          "{Man : }What",
      "- {Note: }this: too",        "It is 10:30\nAt :O",
      "Two men: hi\n{TWO MEN: }hi", "{BlLL JR: }hi\n{BILl JR: }A: b+"};
  const auto check = [](const std::string& marked, bool speakers) {
    EXPECT_EQ(Marked(std::regex_replace(marked, std::regex("[{}+]"), ""), speakers), marked);
  };
  for (const std::string& each : brackets) check(each, false);
  for (const std::string& each : labels) check(each, true);
}

TEST(HearingTextTest, WholeSubtitleMayBracketOverLineEnds) {
  const auto all = [](const std::vector<std::string>& lines) {
    return IsAllHearingImpaired(lines, kAllBrackets);
  };
  EXPECT_TRUE(all({"- [a", "b] ]", "#c#"}));
  EXPECT_FALSE(all({"[a] b"}));
  EXPECT_FALSE(all({"[a]", "b"}));
  EXPECT_FALSE(all({"[a", "b"}));
  EXPECT_FALSE(all({}));
}

class ErasingTest : public test::OcrTest {
 protected:
  std::vector<std::string> Erased(SubpictureUnit& unit, bool speakers = false) {
    HearingOptions options{kAllBrackets, speakers, cut_};
    EXPECT_FALSE(Failed(EraseHearingImpaired(unit, options, Tools())));
    return unit.ocrText;
  }
  // Frame column of a box's first and last pixel, halved sum.
  static int MiddleOf(const SubpictureUnit& unit) {
    const ContentBox& box = unit.state.statistics.box;
    return unit.state.area.sx + (box.left + box.right) / 2;
  }
  static int BottomOf(const SubpictureUnit& unit) {
    return unit.state.area.sy - unit.state.hiddenRows + unit.state.statistics.box.bottom;
  }

  CutOptions cut_{true, true, false, {1, 1}};
};

TEST_F(ErasingTest, RestOfTheLineIsCentredWhereTheLineWas) {
  SubpictureUnit unit = TextUnit({"[A] BaB"});
  RunOcr(unit, Tools());
  const int middle = MiddleOf(unit);
  EXPECT_EQ(Erased(unit), std::vector<std::string>{"BaB"});
  // Half of the gap behind the bracket goes with what is left.
  EXPECT_NEAR(MiddleOf(unit), middle, 5);
  EXPECT_EQ(unit.savedOcrText, std::vector<std::string>{"[A] BaB"});
  cut_.recenter = false;
  SubpictureUnit left = TextUnit({"[A] BaB"});
  const int start = 60 + test::kBlockMargin;
  EXPECT_EQ(Erased(left), std::vector<std::string>{"BaB"});
  EXPECT_NEAR(left.state.area.sx + left.state.statistics.box.left, start, 10);
}

TEST_F(ErasingTest, LinesAboveComeDownIntoTheGap) {
  SubpictureUnit unit = TextUnit({"ab", "- (A)"});
  RunOcr(unit, Tools());
  const int bottom = BottomOf(unit);
  EXPECT_EQ(Erased(unit), std::vector<std::string>{"ab"});
  EXPECT_EQ(BottomOf(unit), bottom);
  EXPECT_EQ(unit.state.verticalOffset, -test::kBlockPitch);
  cut_.alignBottom = false;
  SubpictureUnit high = TextUnit({"ab", "- (A)"});
  Erased(high);
  EXPECT_EQ(BottomOf(high), bottom - test::kBlockPitch);
}

TEST_F(ErasingTest, SecondRangeOfALineIsCutAtItsNewPlace) {
  SubpictureUnit unit = TextUnit({"(A) b [C] #a# c"});
  EXPECT_EQ(Erased(unit), std::vector<std::string>{"b c"});
  SubpictureUnit labels = TextUnit({"AB: [C] a", "[x", "b] A"});
  EXPECT_EQ(Erased(labels, true), (std::vector<std::string>{"a", "[x", "b] A"}));
}

TEST_F(ErasingTest, WholeSubtitleBecomesBlankAndStays) {
  SubpictureUnit unit = TextUnit({"- [A", "b]"});
  EXPECT_TRUE(Erased(unit).empty());
  EXPECT_TRUE(unit.state.statistics.empty);
  EXPECT_FALSE(unit.savedOcrText.empty());
  EXPECT_TRUE(Erased(unit).empty());
}

TEST_F(ErasingTest, CutFollowsTheSlant) {
  constexpr float kSlant = 0.4F;
  test::BlockEngine slanted(kSlant);
  SubpictureUnit unit = TextUnit({"A[B]A"}, kSlant);
  HearingOptions options{kAllBrackets, false, cut_};
  options.cut.recenter = false;
  ASSERT_FALSE(Failed(EraseHearingImpaired(unit, options, Tools(slanted))));
  EXPECT_EQ(unit.ocrText, std::vector<std::string>{"AA"});
  // What stood behind is not torn: both blocks lean alike in every row.
  const int width = unit.charBoxes[0].x1 - unit.charBoxes[0].x0;
  EXPECT_EQ(unit.charBoxes[1].x1 - unit.charBoxes[1].x0, width);
}

TEST_F(ErasingTest, LineCloseBelowIsNotTouchedAndItsOutlineHidesNoInk) {
  SubpictureUnit unit = Unit({"0000000000", "0110110110", "0000000110", "0022000110", "1101101100",
                              "1101101100", "0000000000"});
  ASSERT_FALSE(Failed(DecodeBitmap(unit, context_)));
  unit.textRoles = {1, 2, 3};
  const auto box = [](int x0, int y0, int y1, int line) {
    return CharBox{x0, x0 + 1, y0, y1, U'x', line};
  };
  unit.charBoxes = {box(1, 1, 1, 0), box(4, 1, 1, 0), box(7, 1, 3, 0), {0, 0, 1, 2, kLineEnd, 0},
                    box(0, 4, 5, 1), box(3, 4, 5, 1), box(6, 4, 5, 1), {0, 0, 4, 5, kLineEnd, 1}};
  CutBoxRange(unit, {1, 1}, false);
  EXPECT_EQ(author::PixelRows(unit),
            (std::vector<std::string>{"0000000000", "0111100000", "0001100000", "0021100000",
                                      "1101101100", "1101101100", "0000000000"}));
}

TEST_F(ErasingTest, SelectionOverLinesIsErasedLineByLine) {
  SubpictureUnit unit = TextUnit({"aB", "Ab"});
  RunOcr(unit, Tools());
  ASSERT_FALSE(Failed(EraseSelection(unit, {1, 3}, cut_, Tools())));
  EXPECT_EQ(unit.ocrText, (std::vector<std::string>{"a", "b"}));
  SubpictureUnit stale = unit;
  stale.MarkBoxesStale();
  EXPECT_TRUE(Failed(EraseSelection(stale, {0, 0}, cut_, Tools())));
}

TEST_F(ErasingTest, UnitThatDoesNotFitStaysAsItWas) {
  SubpictureUnit unit = TextUnit({"[A] BaB"});
  RunOcr(unit, Tools());
  // Codes of another bitmap lie behind these, which an edit must not touch.
  unit.state.sequences.back().commands.insert(unit.state.sequences.back().commands.begin(),
                                              {kSetFieldOffsets, 0, 2, {4, 9}});
  const SpuState before = unit.state;
  EXPECT_TRUE(Failed(EraseHearingImpaired(unit, {kAllBrackets, false, cut_}, Tools())));
  EXPECT_EQ(unit.state, before);
  EXPECT_GT(unit.charBoxCount, 0);
  EXPECT_EQ(messages_.errors.size(), 1U);
}

}  // namespace
}  // namespace quillomar
