#include "spu/duration.h"

#include "dvd/big_endian.h"
#include "edit_fixture.h"
#include "spu/sequence_edit.h"
#include "spu/visibility.h"

namespace quillomar {
namespace {

using namespace test;

class DurationTest : public EditTest {
 protected:
  static SpuDescription Endless() {
    SpuDescription description = Plain(0);
    description.sequences.pop_back();
    return description;
  }
};

TEST_F(DurationTest, EveryWholeFrameIsShownAsItWasSet) {
  for (const SpuContext& context : {context_, ntsc_}) {
    const int most = kMaxDelay * kDelayUnitTicks / FrameTicks(context.standard);
    SubpictureUnit unit = Parsed(Plain(0));
    for (int frames = 1; frames <= most; ++frames) {
      const int ms = static_cast<int>(frames * FrameMs(context.standard));
      ASSERT_EQ(SetDelay(unit, -1, ms, context), Result::kDone);
      const auto offset = unit.state.sequences[1].ownOffset;
      const std::uint16_t saved = GetShort(unit.state.bytes, offset + kSequenceDelayOffset);
      ASSERT_EQ(ShownDelayMs(saved, context.standard), ms) << frames;
      ASSERT_EQ(DurationMs(unit, context.standard), ms) << frames;
      const Bytes bytes = unit.state.bytes;
      ASSERT_EQ(SetDelay(unit, 1, DurationMs(unit, context.standard), context), Result::kDone);
      ASSERT_EQ(unit.state.bytes, bytes);
    }
    ASSERT_EQ(SetDelay(unit, -1, 2000000000, context), Result::kDone);
    EXPECT_EQ(DurationMs(unit, context.standard),
              static_cast<int>(most * FrameMs(context.standard)));
  }
}

TEST_F(DurationTest, OnlyAnotherDurationIsWritten) {
  SubpictureUnit unit = Parsed(Plain(104));  // 1183 ms, shown as 1200, which would be 105 units
  const Bytes bytes = unit.state.bytes;
  for (const int ms : {1180, 1194, 1200, 1219}) {
    ASSERT_EQ(SetDelay(unit, -1, ms, context_), Result::kDone);
    EXPECT_EQ(unit.state.bytes, bytes);
  }
  EXPECT_FALSE(unit.state.modified);
  ASSERT_EQ(SetDelay(unit, -1, 1220, context_), Result::kDone);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), 1240);
  EXPECT_TRUE(unit.state.modified);
  ContentOf(unit);
  for (const int index : {0, 2, -2}) {
    ExpectRefusal(unit, "",
                  [&](SubpictureUnit& each) { return SetDelay(each, index, 90, context_); });
  }
  // A stop never comes before what it stops.
  const std::vector<NewCommand> step = {{kSetContrast, {}}, {kEndOfCommands, {}}};
  ASSERT_EQ(AddControlSequence(unit, 0, 400, step, context_), Result::kDone);
  ASSERT_EQ(SetDelay(unit, -1, 80, context_), Result::kDone);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), 440);
}

TEST_F(DurationTest, RangeEndsBeforeTheNextUnit) {
  SpuDescription description = Plain(300);
  description.sequences.insert(description.sequences.begin() + 1, {100, {{kStop}}});
  SubpictureUnit unit = Parsed(description);
  unit.state.pts = 90089;
  const auto expect = [&](int index, std::optional<std::uint32_t> next, VideoStandard standard,
                          int smallest, int largest) {
    const auto limits = DelayRange(unit, index, next, standard);
    ASSERT_TRUE(limits);
    EXPECT_EQ(limits->smallest, smallest);
    EXPECT_EQ(limits->largest, largest);
  };
  expect(1, std::nullopt, VideoStandard::kPal, 40, 734287);
  expect(2, std::nullopt, VideoStandard::kNtsc, 1137 + 33, 734287);
  expect(-1, 90090 + 180000, VideoStandard::kPal, 1137 + 40, 3001 - 1000 - 40);
  expect(-1, 90090 + 180000, VideoStandard::kNtsc, 1137 + 33, 3001 - 1000 - 33);
  expect(-1, 90189, VideoStandard::kPal, 1177, 1177);
  expect(-1, 90089, VideoStandard::kPal, 1177, 734287);
  expect(-1, 0xFFFFFFFF, VideoStandard::kPal, 1177, 734287);
  for (const int index : {0, 3, 4, -2}) {
    EXPECT_FALSE(DelayRange(unit, index, std::nullopt, VideoStandard::kPal)) << index;
  }
  EXPECT_FALSE(DelayRange(Parsed(Endless()), -1, std::nullopt, VideoStandard::kPal));
}

TEST_F(DurationTest, AStopComesAndGoes) {
  SubpictureUnit unit = Parsed(Endless(), 6);
  const Bytes bytes = unit.state.bytes;
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), -1);
  ASSERT_EQ(RemoveStopCommand(unit, context_), Result::kDone);
  EXPECT_FALSE(unit.state.modified);
  ASSERT_EQ(AddStopCommand(unit, context_), Result::kDone);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), 40);
  EXPECT_TRUE(FindCommand(unit, kStop, 1));
  ExpectRefusal(unit, "", [&](SubpictureUnit& each) { return AddStopCommand(each, context_); });
  ASSERT_EQ(RemoveStopCommand(unit, context_), Result::kDone);
  EXPECT_EQ(unit.state.bytes, bytes);

  SpuDescription narrow = Endless();
  narrow.spareBytes = 5;
  SubpictureUnit full = Parsed(narrow, 0);
  ExpectRefusal(full, "Not enough space in the subpic pack to add another DCSQT!",
                [&](SubpictureUnit& each) { return AddStopCommand(each, context_); });
  full.state.freeRoom = 1;
  EXPECT_EQ(AddStopCommand(full, ntsc_), Result::kDone);
  EXPECT_EQ(DurationMs(full, VideoStandard::kNtsc), 33);

  SpuDescription blinking = Plain(300);
  blinking.sequences.push_back({400, {{kStart}}});
  SubpictureUnit shown = Parsed(blinking);
  ASSERT_EQ(RemoveStopCommand(shown, context_), Result::kDone);
  EXPECT_EQ(shown.state.sequences.size(), 3U);
  SpuDescription never = Endless();
  never.sequences[0].commands.push_back({kStop});
  SubpictureUnit single = Parsed(never);
  ExpectRefusal(single, "I can't remove the last remaining DCSQT!",
                [&](SubpictureUnit& each) { return RemoveStopCommand(each, context_); });
}

TEST_F(DurationTest, StartIsForcedOrNormalInEverySequence) {
  SpuDescription description = Plain(300);
  description.sequences.push_back({400, {{kForcedStart}}});
  SubpictureUnit unit = Parsed(description);
  ASSERT_EQ(SetForcedStart(unit, false), Result::kDone);
  EXPECT_FALSE(IsForced(unit));
  EXPECT_TRUE(unit.state.modified);
  ContentOf(unit);
  ASSERT_EQ(SetForcedStart(unit, true), Result::kDone);
  EXPECT_TRUE(FindCommand(unit, kForcedStart, 0) && FindCommand(unit, kForcedStart, 2));
  unit.state.modified = false;
  ASSERT_EQ(SetForcedStart(unit, true), Result::kDone);
  EXPECT_FALSE(unit.state.modified);
  SpuDescription startless = Plain(300);
  startless.sequences[0].commands.erase(startless.sequences[0].commands.begin());
  SubpictureUnit never = Parsed(startless);
  ExpectRefusal(never, "", [&](SubpictureUnit& each) { return SetForcedStart(each, true); });
}

TEST_F(DurationTest, HidingClearsEveryAlpha) {
  SpuDescription description = Plain(300);
  // Ten columns, of which the record holds eight.
  const std::vector<ColconBandDescription::Column> columns(10, {0, {9, 9, 9, 9}, {1, 2, 3, 4}});
  description.sequences[0].commands.push_back(ColconCommand({{400, 401, columns}}));
  description.sequences[1].commands.push_back(ContrastCommand({7, 7, 7, 7}));
  SubpictureUnit unit = Parsed(description);
  unit.allSequences = false;
  ASSERT_TRUE(IsShown(unit, context_));
  ASSERT_EQ(HideUnit(unit), Result::kDone);
  EXPECT_FALSE(IsShown(unit, context_));
  EXPECT_EQ(unit.currentAlphas, PixelTypeValues{});
  EXPECT_TRUE(unit.state.modified);
  const SubpictureUnit reader = Parsed(unit.state.bytes, 0);
  EXPECT_EQ(reader.state.colconTables, unit.state.colconTables);
  EXPECT_EQ(reader.state.sequences, unit.state.sequences);
  const Bytes& bytes = unit.state.bytes;
  const auto alphas = {std::uint8_t{0x43}, std::uint8_t{0x21}};
  EXPECT_EQ(std::search(bytes.begin(), bytes.end(), alphas.begin(), alphas.end()), bytes.end());
  unit.state.modified = false;
  ASSERT_EQ(HideUnit(unit), Result::kDone);
  EXPECT_FALSE(unit.state.modified);
}

}  // namespace
}  // namespace quillomar
