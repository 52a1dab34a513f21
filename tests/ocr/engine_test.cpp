#include <gtest/gtest.h>

#include "ocr/learning_engine.h"
#include "spu/char_box.h"
#include "support/message_collector.h"
#include "support/plain_type.h"

namespace quillomar {
namespace {

using test::Pictures;
using test::SetInPlainType;

void NoFault(std::vector<Reading>& /*readings*/) {}

// Reads the o of a line that holds an X as "d".
void ConfuseBesideX(std::vector<Reading>& readings) {
  const auto holds = [&](char32_t ch) {
    return std::any_of(readings.begin(), readings.end(),
                       [ch](const Reading& each) { return each.ch == ch; });
  };
  if (!holds(U'X')) return;
  for (Reading& reading : readings) {
    if (reading.ch == U'o') reading.ch = U'd';
  }
}

std::string TextOf(const EngineResult& result) {
  std::string text;
  for (const EngineLine& line : result.lines) text += (text.empty() ? "" : "/") + line.text;
  return text;
}

class EngineTest : public testing::Test {
 protected:
  LearningEngine Engine(test::ReadingFault fault) {
    return {std::make_unique<test::PlainTypeSource>(std::move(fault), &linesRead_), messages_.files,
            messages_.reporter, "/settings"};
  }
  std::vector<std::string> TextsOf(OcrEngine& engine, const Pictures& pictures) {
    std::vector<std::string> texts;
    for (const auto& result : engine.RecogniseAll(pictures, {}, {})) {
      texts.push_back(result ? TextOf(*result) : "-");
    }
    return texts;
  }
  Lesson LessonOn(const EnginePicture& picture, const EngineResult& result, std::size_t first,
                  std::size_t count, const std::string& text) {
    const auto begin = result.boxes.begin() + static_cast<std::ptrdiff_t>(first);
    return {picture,
            {begin, begin + static_cast<std::ptrdiff_t>(count)},
            result.lines[0].refRow,
            0,
            text};
  }

  test::MessageCollector messages_;
  std::atomic<int> linesRead_ = 0;
};

TEST_F(EngineTest, BoxesAreTheInkOnTheStraightenedLine) {
  auto engine = Engine(NoFault);
  for (const double slant : {0.0, 0.25}) {
    const EngineResult result =
        engine.Recognise(SetInPlainType({"bad dab mad bam", "nod. bob. mom"}, slant), {});
    ASSERT_EQ(TextOf(result), "bad dab mad bam/nod. bob. mom");
    EXPECT_NEAR(result.lines[0].slant, slant, 0.02);
    const int baseline = test::kTypeFirstBaseline;
    const EngineBox b{12, 17, baseline - 14, baseline, U'b', false};
    const EngineBox& first = result.boxes[0];
    EXPECT_LE(std::abs(first.x0 - b.x0) + std::abs(first.x1 - b.x1), 2)
        << first.x0 << ' ' << first.x1;
    EXPECT_EQ(std::tie(first.y0, first.y1, first.ch), std::tie(b.y0, b.y1, b.ch));
    EXPECT_EQ(result.boxes[3].ch, U' ');
    EXPECT_EQ(result.boxes[3].x0, result.boxes[2].x1 + 1);
    EXPECT_EQ(result.boxes[3].x1, result.boxes[4].x0 - 1);
    EXPECT_EQ(result.boxes.back().ch, kLineEnd);
  }
}

TEST_F(EngineTest, EqualGlyphsOfTheDiscOverruleWhatOneLineWasReadAs) {
  const EnginePicture confusing = SetInPlainType({"oXo mom"});
  EXPECT_EQ(TextOf(Engine(ConfuseBesideX).Recognise(confusing, {})), "dXd mdm");
  auto engine = Engine(ConfuseBesideX);
  const Pictures pictures(
      {confusing, SetInPlainType({"boo moon. dodo"}), SetInPlainType({"noon"})});
  const auto texts = TextsOf(engine, pictures);
  EXPECT_EQ(texts, (std::vector<std::string>{"oXo mom", "boo moon. dodo", "noon"}));
  EXPECT_EQ(TextOf(engine.Recognise(confusing, {})), "oXo mom");
  engine.ForgetDisc();
  EXPECT_EQ(TextOf(engine.Recognise(confusing, {})), "dXd mdm");
}

TEST_F(EngineTest, LinesOfWellKnownGlyphsAreNotReadAndEveryRunIsTheSame) {
  std::vector<EnginePicture> all;
  std::vector<std::string> truth;
  for (int i = 0; i < 120; ++i) {
    truth.emplace_back(i % 3 == 0 ? "mad bob" : i % 3 == 1 ? "nod a dab." : "moon");
    all.push_back(SetInPlainType({truth.back()}));
  }
  const Pictures pictures(std::move(all));
  auto engine = Engine(NoFault);
  EXPECT_EQ(TextsOf(engine, pictures), truth);
  EXPECT_LT(linesRead_, 40);
  auto again = Engine(NoFault);
  EXPECT_EQ(TextsOf(again, pictures), truth);
}

TEST_F(EngineTest, AStopLeavesTheRestUnread) {
  auto engine = Engine(NoFault);
  const Pictures pictures(std::vector<EnginePicture>(40, SetInPlainType({"mad"})));
  std::size_t last = 0;
  const auto results = engine.RecogniseAll(pictures, {}, [&](std::size_t done, std::size_t steps) {
    EXPECT_LE(done - last, 1U);
    last = done;
    EXPECT_EQ(steps, 80U);
    return done < 50;
  });
  const auto read = std::count_if(results.begin(), results.end(),
                                  [](const auto& each) { return each.has_value(); });
  EXPECT_GE(read, 10);
  EXPECT_LT(read, 40);
}

TEST_F(EngineTest, LessonsGoFirstAndAreKeptForOtherDiscs) {
  const EnginePicture picture = SetInPlainType({"bad a"});
  const Pictures pictures({picture, SetInPlainType({"abba dab", "aa"})});
  auto engine = Engine(NoFault);
  const EngineResult result = engine.Recognise(picture, {});
  const Lesson lesson = LessonOn(picture, result, 1, 1, "\u00e4");
  EXPECT_EQ(engine.CountAppearances(lesson, pictures, {}), (std::vector<int>{2, 5}));
  EXPECT_EQ(engine.Teach(lesson), Result::kDone);
  EXPECT_EQ(engine.Teach(LessonOn(picture, result, 0, 2, "X")), Result::kDone);
  auto later = Engine(NoFault);
  EXPECT_EQ(TextsOf(later, pictures),
            (std::vector<std::string>{"Xd \u00e4", "\u00e4bX d\u00e4b/\u00e4\u00e4"}));
}

}  // namespace
}  // namespace quillomar
