#pragma once

#include <gtest/gtest.h>

#include "author/spu_builder.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"
#include "spu/run_length.h"
#include "support/message_collector.h"

namespace quillomar::test {

using namespace author;

// What a unit's bytes say, apart from where it stands in them.
struct Content {
  using Command = std::pair<std::uint32_t, std::array<std::uint16_t, 4>>;
  std::vector<std::pair<int, std::vector<Command>>> sequences;
  std::vector<std::string> rows;
  DisplayArea area;
  bool operator==(const Content&) const = default;
};

inline Content ContentOf(const Bytes& bytes, const SpuContext& context) {
  SubpictureUnit reader = MakeUnit(bytes);
  EXPECT_EQ(ParseControlSequences(reader, 0, 0, context), Result::kDone);
  EXPECT_EQ(DecodeBitmap(reader, context), Result::kDone);
  Content content{{}, PixelRows(reader), reader.state.area};
  for (const auto& sequence : reader.state.sequences) {
    auto& commands = content.sequences.emplace_back(sequence.delay, 0).second;
    for (const auto& each : sequence.commands) {
      commands.emplace_back(each.code, each.arguments);
      if (each.code == kSetFieldOffsets) commands.back().second = {};
    }
  }
  return content;
}

// Units to be read or edited, and what must hold of them afterwards.
class UnitTest : public testing::Test {
 protected:
  SubpictureUnit Parsed(const Bytes& bytes, int freeRoom) {
    SubpictureUnit unit = MakeUnit(bytes);
    unit.state.freeRoom = freeRoom;
    EXPECT_EQ(ParseControlSequences(unit, 0, 0, context_), Result::kDone);
    SelectControlSequence(unit, 0);
    return unit;
  }
  SubpictureUnit Parsed(const SpuDescription& description, int freeRoom = 500) {
    return Parsed(BuildSpu(description), freeRoom);
  }
  SubpictureUnit Decoded(const Bytes& bytes, int freeRoom) {
    SubpictureUnit unit = Parsed(bytes, freeRoom);
    EXPECT_EQ(DecodeBitmap(unit, context_), Result::kDone);
    return unit;
  }
  SubpictureUnit Decoded(const SpuDescription& description, int freeRoom = 40000) {
    return Decoded(BuildSpu(description), freeRoom);
  }
  static SpuDescription Plain(int stopDelay) {
    return Subtitle({"00000000", "01233210", "00111100", "02222220"}, 100, 400, stopDelay);
  }
  // The edit fails with exactly this message, or silently, and leaves everything as it was.
  template <typename Edit>
  void ExpectRefusal(SubpictureUnit& unit, const std::string& text, Edit edit) {
    messages_.errors.clear();
    const SubpictureUnit before = unit;
    EXPECT_EQ(edit(unit), Result::kFailed);
    EXPECT_EQ(unit.state, before.state);
    EXPECT_EQ(unit.currentSequence, before.currentSequence);
    EXPECT_EQ(unit.currentAlphas, before.currentAlphas);
    EXPECT_EQ(messages_.errors, std::vector<std::string>(text.empty() ? 0 : 1, text));
  }
  // The content, of which the unit must hold the same sequences.
  Content ContentOf(const SubpictureUnit& unit) {
    EXPECT_EQ(Parsed(unit.state.bytes, 0).state.sequences, unit.state.sequences);
    return test::ContentOf(unit.state.bytes, context_);
  }
  static PixelTypeValues AlphasOf(SubpictureUnit& unit, int sequence) {
    SelectControlSequence(unit, sequence);
    return *unit.currentAlphas;
  }

  MessageCollector messages_;
  ReportLimit limit_{messages_.reporter};
  SpuContext context_{messages_.reporter, limit_, VideoStandard::kPal};
  SpuContext ntsc_{messages_.reporter, limit_, VideoStandard::kNtsc};
};

}  // namespace quillomar::test
