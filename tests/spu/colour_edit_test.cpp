#include "spu/colour_edit.h"

#include <gtest/gtest.h>

#include "spu/parse.h"
#include "support/message_collector.h"
#include "support/spu_builder.h"

namespace quillomar {
namespace {

using namespace test;

class ColourEditTest : public testing::Test {
 protected:
  // Colours and alphas in sequence 0, alphas alone in sequence 1, neither in sequence 2.
  ColourEditTest() {
    SpuDescription description = Subtitle({"0000", "0110", "0220"}, 10, 20, 50);
    description.sequences[0].commands = {
        {kStart}, ColourCommand({4, 5, 6, 7}), ContrastCommand({0, 3, 4, 15})};
    description.sequences[1].commands = {ContrastCommand({0, 1, 2, 3})};
    description.sequences.push_back({100, {{kStop}}});
    bytes_ = BuildSpu(description);
    unit_ = MakeUnit(bytes_);
    EXPECT_EQ(ParseControlSequences(unit_, 0, 0, context_), Result::kDone);
    SelectControlSequence(unit_, 0);
  }
  // The values that a reader of the bytes alone finds.
  PixelTypeValues InBytes(std::uint8_t code, int sequence) {
    SubpictureUnit unit = MakeUnit(unit_.state.bytes);
    EXPECT_EQ(ParseControlSequences(unit, 0, 0, context_), Result::kDone);
    EXPECT_EQ(unit.state.sequences, unit_.state.sequences);
    SelectControlSequence(unit, sequence);
    return code == kSetColour ? *unit.currentColours : *unit.currentAlphas;
  }

  MessageCollector messages_;
  ReportLimit limit_{messages_.reporter};
  SpuContext context_{messages_.reporter, limit_, VideoStandard::kPal};
  Bytes bytes_;
  SubpictureUnit unit_;
};

TEST_F(ColourEditTest, SequencesWithoutTheirOwnValuesShowThoseOfTheFirst) {
  EXPECT_EQ(SelectControlSequence(unit_, 1), FindCommand(unit_, kSetContrast, 1));
  EXPECT_EQ(unit_.currentColours, (PixelTypeValues{4, 5, 6, 7}));
  EXPECT_EQ(unit_.currentAlphas, (PixelTypeValues{0, 1, 2, 3}));
  EXPECT_EQ(SelectControlSequence(unit_, 2), std::nullopt);
  EXPECT_EQ(unit_.currentAlphas, (PixelTypeValues{0, 3, 4, 15}));
  EXPECT_EQ(SelectControlSequence(unit_, 3), std::nullopt);
  EXPECT_EQ(SelectControlSequence(unit_, -1), std::nullopt);
  EXPECT_EQ(unit_.currentSequence, 2);
  EXPECT_EQ(FindCommand(unit_, kSetColour, 1), std::nullopt);
  EXPECT_EQ(unit_.state.bytes[static_cast<std::size_t>(*FindCommand(unit_, kSetColour, 0))],
            kSetColour);
  unit_.complete = false;
  EXPECT_EQ(FindCommand(unit_, kSetColour, 0), std::nullopt);
}

TEST_F(ColourEditTest, ColoursMarkTheUnitOnlyWhenTheyChange) {
  ASSERT_EQ(SetColour(unit_, 6, kEmphasis1), Result::kDone);
  EXPECT_FALSE(unit_.state.modified);
  EXPECT_EQ(unit_.state.bytes, bytes_);
  ASSERT_EQ(SetColour(unit_, 11, kEmphasis1), Result::kDone);
  EXPECT_TRUE(unit_.state.modified);
  EXPECT_EQ(InBytes(kSetColour, 0), (PixelTypeValues{4, 5, 11, 7}));
  EXPECT_EQ(unit_.currentColours, (PixelTypeValues{4, 5, 11, 7}));
  EXPECT_EQ(unit_.state.bytes.size(), bytes_.size());
  EXPECT_EQ(SetColour(unit_, 16, 0), Result::kFailed);
  EXPECT_EQ(SetColour(unit_, 0, 4), Result::kFailed);
}

TEST_F(ColourEditTest, AlphasAlwaysMarkTheUnit) {
  unit_.allSequences = false;
  SelectControlSequence(unit_, 2);
  ASSERT_EQ(SetAlpha(unit_, 9, kPattern, context_), Result::kDone);
  EXPECT_EQ(unit_.state.bytes, bytes_);
  EXPECT_TRUE(unit_.state.modified);
}

TEST_F(ColourEditTest, AlphasReachOneTypeTheTextOrAllInTheSequencesAsked) {
  ASSERT_EQ(SetAlpha(unit_, 9, kPattern, context_), Result::kDone);
  EXPECT_EQ(InBytes(kSetContrast, 0), (PixelTypeValues{0, 9, 4, 15}));
  EXPECT_EQ(InBytes(kSetContrast, 1), (PixelTypeValues{0, 9, 2, 3}));
  EXPECT_EQ(unit_.currentSequence, 0);
  EXPECT_EQ(unit_.currentAlphas, (PixelTypeValues{0, 9, 4, 15}));

  unit_.allSequences = false;
  SelectControlSequence(unit_, 1);
  ASSERT_EQ(SetAlpha(unit_, 15, kAlphaAllButBackground, context_), Result::kDone);
  EXPECT_EQ(InBytes(kSetContrast, 1), (PixelTypeValues{0, 15, 15, 15}));
  ASSERT_EQ(SetAlpha(unit_, 7, kAlphaAll, context_), Result::kDone);
  EXPECT_EQ(InBytes(kSetContrast, 1), (PixelTypeValues{7, 7, 7, 7}));
  EXPECT_EQ(InBytes(kSetContrast, 0), (PixelTypeValues{0, 9, 4, 15}));
}

TEST_F(ColourEditTest, AlphaOfTheTextNeedsABitmap) {
  unit_.state.width = 0;
  EXPECT_EQ(SetAlpha(unit_, 15, kAlphaAllButBackground, context_), Result::kFailed);
  EXPECT_FALSE(unit_.state.modified);
  EXPECT_EQ(unit_.state.bytes, bytes_);
}

TEST_F(ColourEditTest, MeanAlphaAddsItsHalfBeforeDividing) {
  EXPECT_EQ(MeanTextAlpha(unit_, context_), 3);  // (3 + 4 + 0.5) / 2; type 3 does not occur
  ASSERT_EQ(SetAlpha(unit_, 5, kAlphaAllButBackground, context_), Result::kDone);
  EXPECT_EQ(MeanTextAlpha(unit_, context_), 5);

  SubpictureUnit blank = MakeUnit(BuildSpu(Subtitle({"00", "00"}, 0, 0, 9)));
  ASSERT_EQ(ParseControlSequences(blank, 0, 0, context_), Result::kDone);
  SelectControlSequence(blank, 0);
  EXPECT_EQ(MeanTextAlpha(blank, context_), 0);
}

}  // namespace
}  // namespace quillomar
