#include <gtest/gtest.h>

#include "ocr/accents.h"
#include "ocr/letter_rules.h"
#include "ocr/line_split.h"
#include "ocr/music_note.h"
#include "ocr/spacing.h"

namespace quillomar {
namespace {

EnginePicture Picture(const std::vector<std::string>& rows) {
  EnginePicture picture;
  picture.width = static_cast<int>(rows[0].size());
  picture.height = static_cast<int>(rows.size());
  for (const std::string& row : rows) {
    for (const char pixel : row) picture.grey.push_back(pixel == '#' ? 0 : 255);
  }
  return picture;
}

Glyph WholePicture(const std::vector<std::string>& rows) {
  Glyph glyph;
  for (Component& component : FindComponents(Picture(rows))) {
    const int pixels = component.pixels;
    const PixelBox box = component.box;
    glyph.Join({box, {std::move(component)}, pixels});
  }
  return glyph;
}

std::vector<std::string> Note() {
  return {"....#...", "....##..", "....###.", "....#.##", "....#..#",
          "....#..#", "....#..#", "....#..#", "....#...", "....#...",
          "....#...", ".####...", "#####...", "####....", ".##....."};
}

TEST(GlyphRulesTest, ANoteHasAHeadAStemAndAFlag) {
  const auto isNote = [](const std::vector<std::string>& rows) {
    const GlyphLine line{0, {static_cast<int>(rows.size()) - 1, 10}, {}};
    return LooksLikeMusicNote(WholePicture(rows), line);
  };
  EXPECT_TRUE(isNote(Note()));
  auto capitalJ = Note();
  for (std::size_t row = 1; row < 8; ++row) capitalJ[row] = "....#...";
  EXPECT_FALSE(isNote(capitalJ));
  auto letterF = Note();
  for (std::size_t row = 11; row < 15; ++row) letterF[row] = "....#...";
  EXPECT_FALSE(isNote(letterF));
  auto broken = Note();
  for (std::size_t row = 5; row < 11; ++row) broken[row] = ".......#";
  EXPECT_TRUE(isNote(broken));
  auto stemless = broken;
  for (std::size_t row = 8; row < 11; ++row) stemless[row] = "........";
  EXPECT_TRUE(isNote(stemless));
  // A question mark; an exclamation mark that leans
  EXPECT_FALSE(
      isNote({"..####..", ".#######", ".#....##", "#.....##", "......##", "......##", ".....##.",
              "....##..", "...##...", "...#....", "..#.....", "..#.....", "........", "........",
              "........", "........", ".##.....", "###.....", "##......"}));
  EXPECT_FALSE(isNote({".......##", ".......##", "......#..", ".....#...", ".....#...", "....#....",
                       ".........", ".##......", ".##......"}));
  // A capital I, upright and leaning
  std::vector<std::string> serifs(18, "..##..");
  for (const std::size_t row : {0U, 1U, 16U, 17U}) serifs[row] = "######";
  EXPECT_FALSE(isNote(serifs));
  const std::vector<std::string> leaning = {
      "....######", ".....###..", ".....###..", ".....###..", ".....##...", ".....##...",
      "....###...", "....###...", "....##....", "....##....", "...###....", "...###....",
      "...##.....", "...##.....", "..###.....", "..###.....", "######...."};
  EXPECT_FALSE(LooksLikeMusicNote(WholePicture(leaning), {0.25F, {16, 12}, {}}));
}

TEST(GlyphRulesTest, ABracketIsKnownByItsShapeAndMayTouchACapital) {
  const std::vector<std::string> bracket = {
      ".......#####", "......###...", "......###...", ".....###....", ".....##.....",
      ".....##.....", "....###.....", "....##......", "...###......", "...###......",
      "...##.......", "..###.......", "..##........", ".###........", ".##.........",
      ".##.........", "######......"};
  const auto leaning = [&](float slant) {
    GlyphLine line{slant, {13, 11}, {}};
    Glyph glyph = WholePicture(bracket);
    glyph.box = Straightened(glyph.components[0], 13, slant);
    GlyphText text;
    text.text = U"f";
    FixBracket(text, glyph, line);
    return text.text;
  };
  EXPECT_EQ(leaning(0.4F), U"[");
  EXPECT_EQ(leaning(0), U"f");
  std::vector<std::string> rows(20, "##......##");
  for (const std::size_t row : {0U, 19U}) rows[row] = "####....##";
  rows[17] = "##########";
  const auto read = [&](int baseline) {
    GlyphText text;
    text.text = U"J";
    FixBracket(text, WholePicture(rows), {0, {baseline, 10}, {}});
    return text.text;
  };
  EXPECT_EQ(read(16), U"[J");
  EXPECT_EQ(read(19), U"J");
}

TEST(GlyphRulesTest, DescendersAndBracketsAreNotTheBaseline) {
  InkLine line;
  line.typicalHeight = 20;
  for (const auto& [top, bottom] :
       {std::pair{2, 29}, {8, 29}, {8, 23}, {8, 23}, {8, 29}, {2, 29}}) {
    Component component;
    for (int row = top; row <= bottom; ++row) component.Add({row, 0, 4});
    line.box.Join(component.box);
    line.components.push_back(component);
  }
  EXPECT_EQ(FindBaseline(line), 23);
}

TEST(GlyphRulesTest, MarksDecideTheAccentThatWasNotRead) {
  const std::vector<std::string> acute = {"....##", "..##..", "......", ".####.",
                                          "##..##", "##..##", ".####."};
  const std::vector<std::string> dots = {"##..##", "##..##", "......", "##..##",
                                         "##..##", "##..##", ".#####"};
  const MarksAbove one = FindMarksAbove(WholePicture(acute), 6, 0);
  EXPECT_EQ(one.shape, Accent::kAcute);
  EXPECT_TRUE(AccentIsWrong(U"6", one) && AccentIsWrong(U"o", one));
  EXPECT_FALSE(AccentIsWrong(U"\u00f4", one) || AccentIsWrong(U"i", one) ||
               AccentIsWrong(U"!", one));
  EXPECT_EQ(Compose({U'O', Accent::kAcute}), U'\u00d3');
  EXPECT_EQ(Compose({U'n', Accent::kCircumflex}), U'\u00f1');
  const MarksAbove two = FindMarksAbove(WholePicture(dots), 6, 0);
  EXPECT_EQ(two.count, 2);
  EXPECT_TRUE(AccentIsWrong(U"\u00fa", two) && AccentIsWrong(U"ii", two));
  EXPECT_EQ(WithoutMarks(WholePicture(dots)).box.y0, 3);
}

// A line of bars ('|') and of other letters, which are blocks.
LineText Bars(const std::string& word, const std::u32string& readAs) {
  LineText line;
  line.line.metrics = {14, 10};
  int left = 0;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const int width = word[i] == '|' ? 3 : 9;
    Component component;
    for (int row = word[i] == '\'' ? -9 : 0; row <= (word[i] == '\'' ? -5 : 14); ++row)
      component.Add({row, left, left + width - 1});
    line.line.glyphs.push_back({component.box, {component}, component.pixels});
    GlyphText text;
    text.text = readAs[i];
    text.startsWord = i == 0;
    line.texts.push_back(text);
    left += width + 2;
  }
  return line;
}

TEST(GlyphRulesTest, WordsTellWhichBarsAreCapitals) {
  struct Case {
    const char* word;
    const char32_t* readAs;
    const char* language;
    const char32_t* expected;
  };
  for (const Case& each : {Case{"|", U"l", "en", U"I"}, Case{"|t", U"lt", "de", U"It"},
                           Case{"|'||", U"l'Il", "en", U"I'll"}, Case{"a||", U"aIl", "en", U"all"},
                           Case{"K|NG", U"KlNG", "de", U"KING"}, Case{"||", U"ll", "fr", U"Il"},
                           Case{"||e", U"Ile", "es", U"lle"}, Case{"|'a", U"I'a", "fr", U"l'a"},
                           Case{"|a", U"la", "en", U"la"}, Case{"9|9", U"9l9", "en", U"919"}}) {
    LineText line = Bars(each.word, each.readAs);
    FixBars(line, each.language);
    std::u32string read;
    for (const GlyphText& text : line.texts) read += text.text;
    EXPECT_EQ(read, each.expected) << each.word << ' ' << each.language;
  }
}

TEST(GlyphRulesTest, LinesCloseTogetherArePartedAndMarksStayWithTheirs) {
  std::vector<std::string> rows(46, std::string(120, '.'));
  const auto draw = [&](int left, int right, int top, int bottom) {
    for (int y = top; y <= bottom; ++y) {
      for (int x = left; x <= right; ++x)
        rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = '#';
    }
  };
  for (int i = 0; i < 9; ++i) {
    draw(4 + 12 * i, 11 + 12 * i, 2, 17);
    draw(4 + 12 * i, 11 + 12 * i, 27, 42);
  }
  draw(16, 17, 18, 22);  // a descender of the upper line
  draw(30, 33, 20, 21);  // an accent of the lower line
  const std::vector<InkLine> lines = SplitLines(FindComponents(Picture(rows)));
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].box.y1, 22);
  EXPECT_EQ(lines[1].box.y0, 20);
  for (int y = 2; y <= 42; ++y) rows[static_cast<std::size_t>(y)][60] = '#';
  const std::vector<InkLine> tied = SplitLines(FindComponents(Picture(rows)));
  ASSERT_EQ(tied.size(), 2U);
  EXPECT_EQ(tied[0].components.size() + tied[1].components.size(), 19U);
  // Of the upper line one letter is left, and marks fill what parts it from the lower one.
  for (int y = 0; y < 24; ++y) rows[static_cast<std::size_t>(y)] = std::string(120, '.');
  draw(4, 11, 2, 17);
  draw(30, 33, 16, 21);
  draw(42, 45, 20, 26);
  EXPECT_EQ(SplitLines(FindComponents(Picture(rows))).size(), 2U);
}

TEST(GlyphRulesTest, GapsAreJudgedByTheirKindOnTheDisc) {
  SpaceModel spaces;
  spaces.Settle();
  EXPECT_FALSE(spaces.Judge(0.9, 0.1, false));
  for (int i = 0; i < 40; ++i) spaces.Learn(0.1 + 0.005 * i, false);
  for (int i = 0; i < 10; ++i) spaces.Learn(0.6 + 0.01 * i, true);
  spaces.Learn(0.12, true);
  spaces.Settle();
  EXPECT_EQ(spaces.Judge(0.2, 0.1, false), false);
  EXPECT_EQ(spaces.Judge(0.65, 0.1, false), true);
  EXPECT_EQ(spaces.Judge(0.65, 0.1, true), std::nullopt);
  EXPECT_EQ(spaces.JudgeAlone(0.44), std::nullopt);
}

}  // namespace
}  // namespace quillomar
