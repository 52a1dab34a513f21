#include "ocr/pattern_database.h"

#include <gtest/gtest.h>

#include "support/message_collector.h"

namespace quillomar {
namespace {

// A frame with a dot whose place tells the patterns apart.
GlyphPattern Pattern(int dot) {
  GlyphPattern pattern;
  pattern.width = 20;
  pattern.height = 12;
  pattern.wordsInRow = 1;
  pattern.bits.resize(12);
  for (int x = 0; x < 20; ++x) pattern.Set(x, 0);
  for (int y = 0; y < 12; ++y) pattern.Set(0, y);
  for (int x = 4 * dot + 2; x < 4 * dot + 5; ++x) {
    for (int y = 4; y < 8; ++y) pattern.Set(x, y);
  }
  return pattern;
}

class PatternDatabaseTest : public testing::Test {
 protected:
  PatternDatabase Database() { return {messages_.files, messages_.reporter, "/settings"}; }
  PatternDatabase Loaded() {
    PatternDatabase database = Database();
    database.Load();
    return database;
  }
  std::string List() {
    const Bytes& bytes = messages_.files.Content("/settings/db.lst");
    return {bytes.begin(), bytes.end()};
  }
  void PutList(const std::string& list) {
    messages_.files.Put("/settings/db.lst", Bytes(list.begin(), list.end()));
  }

  test::MessageCollector messages_;
};

TEST_F(PatternDatabaseTest, LessonsSurviveAndLaterOnesReplaceEarlier) {
  PatternDatabase database = Database();
  EXPECT_EQ(database.Teach(Pattern(0), U"a"), Result::kDone);
  EXPECT_EQ(database.Teach(Pattern(1), U"\u00e9"), Result::kDone);
  EXPECT_EQ(database.Teach(Pattern(0), U"rn"), Result::kDone);
  const PatternDatabase loaded = Loaded();
  EXPECT_EQ(loaded.Size(), 2U);
  EXPECT_EQ(loaded.TextOf(Pattern(0)), U"rn");
  EXPECT_EQ(loaded.TextOf(Pattern(1)), U"\u00e9");
  EXPECT_EQ(loaded.TextOf(Pattern(2)), U"");
  EXPECT_EQ(List(), "1 0 1 rn\n2 0 1 \u00e9\n");
}

TEST_F(PatternDatabaseTest, WhatIsDamagedIsLeftOutWithALogLine) {
  PatternDatabase database = Database();
  for (const int dot : {0, 1, 2, 3}) {
    const std::u32string text(1, U'a' + static_cast<char32_t>(dot));
    EXPECT_EQ(database.Teach(Pattern(dot), text), Result::kDone);
  }
  messages_.files.Content("/settings/db_1.pbm").pop_back();
  messages_.files.Content("/settings/db_2.pbm")[1] = '5';
  PutList(List() + "\nnonsense\n7 0 1 \n8 0 0 x\n9 0 1 x\n4 99999999999 1 x\n3 0 1 two words\n");
  const PatternDatabase loaded = Loaded();
  EXPECT_EQ(loaded.Size(), 2U);
  EXPECT_EQ(loaded.TextOf(Pattern(2)), U"c");
  EXPECT_EQ(loaded.TextOf(Pattern(0)), U"");
  EXPECT_TRUE(messages_.Logged("Skipping the damaged OCR pattern db_1.pbm"));
  EXPECT_TRUE(messages_.Logged("Skipping the damaged OCR pattern db_2.pbm"));
  EXPECT_TRUE(messages_.Logged("Skipping the damaged OCR pattern db_9.pbm"));
  EXPECT_TRUE(messages_.Logged("Skipping a damaged line of the OCR pattern list"));
}

TEST_F(PatternDatabaseTest, AFailedWriteIsReportedAndTheListStaysWhole) {
  PatternDatabase database = Database();
  EXPECT_EQ(database.Teach(Pattern(0), U"a"), Result::kDone);
  for (const int writes : {0, 1}) {
    messages_.files.FailWritesFrom(writes);
    EXPECT_EQ(database.Teach(Pattern(1), U"b"), Result::kFailed);
    EXPECT_EQ(database.TextOf(Pattern(1)), U"b");
    EXPECT_EQ(List(), "1 0 1 a\n");
  }
  EXPECT_EQ(messages_.errors.size(), 2U);
}

TEST_F(PatternDatabaseTest, AnImageMayHoldComments) {
  const std::string commented = "P4 # by hand\n# again\n3 1\n\xA0";
  const auto byHand = ParsePatternImage(Bytes(commented.begin(), commented.end()));
  ASSERT_TRUE(byHand);
  EXPECT_TRUE(byHand->Has(0, 0) && !byHand->Has(1, 0) && byHand->Has(2, 0));
}

}  // namespace
}  // namespace quillomar
