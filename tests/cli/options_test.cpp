#include "cli/options.h"

#include <gtest/gtest.h>

#include "cli/json.h"
#include "spu/colour_edit.h"
#include "spu/subpicture_unit.h"

namespace quillomar {
namespace {

using Words = std::vector<std::string>;

std::optional<CliOptions> Parse(const Words& words) {
  std::string error;
  return ParseOptions(words,
                      {"--colour", "--alpha", "--sequence", "--entry", "--delta", "--scale",
                       "--bits", "--palette", "--fade", "--start", "--language"},
                      error);
}

TEST(CliOptions, ReadSelectionsAndEditsInAnyOrder) {
  const auto options =
      Parse({"a.vob", "--numbers", "3,7-9", "--stream=0x21", "--vcid", "2/0x1", "b.vob", "--colour",
             "emphasis2=15", "--alpha=text=0", "--entry", "3=#0aF010", "--delta=+0.5", "--scale",
             "2,0.5", "--bits=4", "--palette=auto", "--fade=add", "--start=forced"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->files, (std::vector<std::string>{"a.vob", "b.vob"}));
  EXPECT_EQ(options->stream, 1);
  EXPECT_EQ(options->vcid, (Vcid{2, 1}));
  ASSERT_EQ(options->numbers.size(), 2U);
  EXPECT_EQ(options->numbers[0].last, 3);
  EXPECT_EQ(options->numbers[1].first, 7);
  EXPECT_EQ(options->numbers[1].last, 9);
  EXPECT_EQ(options->edits.colours[0].which, kEmphasis2);
  EXPECT_EQ(options->edits.alphas[0].which, kAlphaAllButBackground);
  EXPECT_EQ(options->entries[0], (std::pair<int, Rgb>{3, {0x0A, 0xF0, 0x10}}));
  EXPECT_EQ(options->delta, 0.5);
  EXPECT_EQ(std::pair(options->scaleX, options->scaleY), std::pair(2.0, 0.5));
  EXPECT_TRUE(options->bits == 4 && options->automaticPalette);
  EXPECT_TRUE(options->edits.fade == FadeEdit::kAdd && options->edits.forcedStart == true);
}

TEST(CliOptions, TakeValuesUpToTheirLimitsAndRefuseWhatTheyCannotMean) {
  struct Case {
    const char* option;
    Words taken, refused;
  };
  for (const Case& each :
       {Case{"--stream", {"0x20", "0x3F"}, {"0x1F", "0x40"}},
        Case{"--vcid", {"0/0", "65535/255"}, {"3", "1/256", "65536/1", "x/1"}},
        Case{"--numbers", {"1-1", "2,1"}, {"0", "5-3", "0-1", "1,,2", "1x", ""}},
        Case{"--colour", {"pattern=15"}, {"fill=3", "pattern=16", "pattern"}},
        Case{"--alpha", {"all=0"}, {"text=-1"}}, Case{"--sequence", {"all", "0"}, {"some"}},
        Case{"--entry",
             {"0=#000000", "15=#FFffFF"},
             {"16=#000000", "1=000000", "1=#12345g", "1=#0x1234", "#123456"}},
        Case{"--delta", {"+0.5", "-2"}, {"1s", "", "inf", "nan", "2 "}},
        Case{"--scale", {"1000,0.001"}, {"1", "1001,1", "1,0", "1x,1", "x,1"}},
        Case{"--bits", {"4", "24"}, {"8"}}, Case{"--palette", {"auto", "ifo"}, {"some"}},
        Case{"--fade", {"add", "remove"}, {"both"}},
        Case{"--start", {"forced", "normal"}, {"late"}},
        Case{"--language", {"en", "eng"}, {"e", "EN", "engl"}}}) {
    for (const auto& value : each.taken) EXPECT_TRUE(Parse({each.option, value})) << value;
    for (const auto& value : each.refused) EXPECT_FALSE(Parse({each.option, value})) << value;
    EXPECT_FALSE(Parse({each.option})) << each.option;
  }
  for (const char* word : {"--json=1", "--pgc=1", "--no-such"}) EXPECT_FALSE(Parse({word})) << word;
}

TEST(CliOptions, NameTheNearestCommand) {
  const std::vector<std::string> names = {"list", "info", "disc", "render", "set", "clut"};
  EXPECT_EQ(Nearest("lsit", names), "list");
  EXPECT_EQ(Nearest("sets", names), "set");
  EXPECT_EQ(Nearest("rend", names), "render");
}

TEST(Json, EscapesAndReplacesWhatIsNotUtf8) {
  EXPECT_EQ(JsonString("a\"b\\c\n\x01"), "\"a\\\"b\\\\c\\n\\u0001\"");
  EXPECT_EQ(JsonString("gr\xC3\xBC n \xF0\x9F\x98\x80"), "\"gr\xC3\xBC n \xF0\x9F\x98\x80\"");
  EXPECT_EQ(JsonString("\xC3"), "\"\\ufffd\"");
  EXPECT_EQ(JsonString("\xED\xA0\x80x"), "\"\\ufffd\\ufffd\\ufffdx\"");
  EXPECT_EQ(JsonObject().Add("a", 1).Add("b", true).Text(), "{\"a\": 1, \"b\": true}");
}

}  // namespace
}  // namespace quillomar
