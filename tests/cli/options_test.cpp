#include "cli/options.h"

#include <gtest/gtest.h>

#include "cli/json.h"
#include "spu/colour_edit.h"
#include "spu/subpicture_unit.h"

namespace quillomar {
namespace {

std::optional<CliOptions> Parse(const std::vector<std::string>& words) {
  std::string error;
  return ParseOptions(words, {"--colour", "--alpha", "--sequence", "--entry"}, error);
}

TEST(CliOptions, ReadSelectionsAndEditsInAnyOrder) {
  const auto options =
      Parse({"a.vob", "--numbers", "3,7-9", "--stream=0x21", "--vcid", "2/0x1", "b.vob", "--colour",
             "emphasis2=15", "--alpha=text=0", "--entry", "3=#0aF010"});
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
}

TEST(CliOptions, RefuseWhatTheyCannotMean) {
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"--stream", "0x40"},
                                             {"--stream"},
                                             {"--vcid", "3"},
                                             {"--numbers", "0"},
                                             {"--numbers", "5-3"},
                                             {"--numbers", "1,,2"},
                                             {"--numbers", "1x"},
                                             {"--colour", "fill=3"},
                                             {"--colour", "pattern=16"},
                                             {"--alpha", "text=-1"},
                                             {"--entry", "16=#000000"},
                                             {"--entry", "1=000000"},
                                             {"--entry", "1=#12345g"},
                                             {"--entry", "1=#0x1234"},
                                             {"--json=1"},
                                             {"--pgc", "1"},
                                             {"--sequence", "some"},
                                             {"--no-such"}}) {
    EXPECT_FALSE(Parse(words)) << words.front();
  }
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
