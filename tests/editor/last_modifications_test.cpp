#include "editor/last_modifications.h"

#include "support/unit_test.h"

namespace quillomar {
namespace {

class LastModificationsTest : public test::UnitTest {
 protected:
  // Two sequences: start, and stop after about `ms`.
  SubpictureUnit Unit(int ms) {
    const auto description =
        author::Subtitle({"0110", "0220", "0330", "0000"}, 100, 400, ms * 90 / 1024);
    return Parsed(description, 200);
  }

  int DurationAfter(int ms, DurationMode mode) {
    SubpictureUnit unit = Unit(ms);
    ApplyAllChoices choices;
    choices.durations = true;
    choices.durationMs = 3000;
    choices.durationMode = mode;
    EXPECT_FALSE(Failed(ApplyModifications(unit, last, choices, preferences, context_)));
    return DurationMs(unit, context_.standard);
  }

  LastModifications last;
  Preferences preferences;
};

TEST_F(LastModificationsTest, EachEditFillsItsField) {
  const SubpictureUnit unit = Unit(2000);
  const ApplyAllChoices none = ChoicesOf(last);
  EXPECT_FALSE(none.borders || none.verticalPosition || none.colour || none.durations || none.fade);

  UnitEdits edits;
  edits.border = 0;
  edits.crop = true;
  Remember(last, edits, unit);
  EXPECT_TRUE(ChoicesOf(last).borders);
  ApplyAllChoices crop;
  crop.crop = ChoicesOf(last).crop;
  EXPECT_TRUE(crop.CropAlone());
  EXPECT_FALSE(ChoicesOf(last).CropAlone());

  edits = {};
  edits.alphas = {{kPattern, 3}};
  Remember(last, edits, unit);
  edits.alphas = {{kEmphasis1, 4}};
  edits.sequence = 1;
  Remember(last, edits, unit);
  edits.alphas = {{kPattern, 5}};
  Remember(last, edits, unit);
  ASSERT_EQ(last.transparency.size(), 2U);
  EXPECT_EQ(last.transparency[0].which, kEmphasis1);
  EXPECT_EQ(last.transparency[1].value, 5);
  EXPECT_FALSE(last.allControlSequences);
  EXPECT_EQ(last.controlSequence, 1);
  edits.alphas = {{kAlphaAll, 15}};
  Remember(last, edits, unit);
  EXPECT_EQ(last.transparency.size(), 1U);
  EXPECT_EQ(last.verticalPosition, kNeverSet);
}

TEST_F(LastModificationsTest, DurationsAreSetLengthenedOrShortened) {
  EXPECT_EQ(DurationAfter(2500, DurationMode::kSet), 3000);
  EXPECT_EQ(DurationAfter(2500, DurationMode::kLengthen), 3000);
  EXPECT_EQ(DurationAfter(4000, DurationMode::kLengthen), 4000);
  EXPECT_EQ(DurationAfter(4000, DurationMode::kShorten), 3000);
  EXPECT_EQ(DurationAfter(2480, DurationMode::kShorten), 2480);
}

TEST_F(LastModificationsTest, UnitWithoutTheSequenceStaysAsItIs) {
  last.colour = {{kPattern, 9}};
  last.controlSequence = 2;
  last.verticalPosition = 20;
  last.startCommand = 1;
  last.fade = 1;
  ApplyAllChoices choices;
  choices.colour = choices.startCommand = choices.durations = choices.verticalPosition = true;
  choices.crop = true;
  choices.durationMs = 3000;
  SubpictureUnit unit = Unit(2000);
  unit.charBoxCount = 3;
  const SpuState before = unit.state;
  EXPECT_TRUE(Failed(ApplyModifications(unit, last, choices, preferences, context_)));
  EXPECT_EQ(unit.state, before);
  EXPECT_EQ(unit.charBoxCount, 3);

  // A fade comes first and brings sequences of its own.
  choices.fade = true;
  last.transparency = {{kPattern, 1}};
  choices.transparency = true;
  choices.colour = false;
  EXPECT_FALSE(Failed(ApplyModifications(unit, last, choices, preferences, context_)));
  EXPECT_GT(unit.state.sequences.size(), 2U);
  EXPECT_TRUE(IsForced(unit));
}

TEST_F(LastModificationsTest, RefusedEditLeavesTheOthersAndAsksNothing) {
  last.fade = 1;
  last.duration = 3000;
  last.startCommand = 1;
  // Without a second sequence, and with one that ends nothing.
  for (const std::size_t sequences : {1U, 2U}) {
    auto description = author::Subtitle({"0110", "0220"}, 100, 400, 88);
    description.sequences[1].commands = {author::ContrastCommand({0, 15, 15, 15})};
    description.sequences.resize(sequences);
    SubpictureUnit unit = Parsed(description, 0);
    const int shown = DurationMs(unit, context_.standard);
    EXPECT_FALSE(Failed(ApplyModifications(unit, last, ChoicesOf(last), preferences, context_)));
    EXPECT_TRUE(IsForced(unit));
    EXPECT_EQ(unit.state.sequences.size(), sequences);
    EXPECT_EQ(DurationMs(unit, context_.standard), shown);
  }
  EXPECT_TRUE(messages_.questions.empty());
  EXPECT_TRUE(messages_.errors.empty());
}

}  // namespace
}  // namespace quillomar
