#include "spu/sequence_edit.h"

#include <random>

#include "dvd/big_endian.h"
#include "edit_fixture.h"
#include "spu/rooms.h"
#include "support/edit_script.h"

namespace quillomar {
namespace {

using namespace test;

const char* const kNoSpace = "Not enough space in the subpic pack to add another DCSQT!";
const std::vector<NewCommand> kStep = {{kSetContrast, {1, 2, 3, 4}}, {kEndOfCommands, {}}};

class SequenceEditTest : public EditTest {
 protected:
  // Unused bytes behind each sequence, as no rule forbids.
  Bytes WithGaps(const SpuDescription& description, std::size_t gap) {
    const SubpictureUnit unit = Parsed(description);
    const auto& sequences = unit.state.sequences;
    Bytes bytes = unit.state.bytes;
    for (std::size_t i = sequences.size(); i-- > 0;) {
      const bool last = i + 1 == sequences.size();
      const std::size_t end = last ? bytes.size() : sequences[i + 1].ownOffset;
      bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(end), gap, 0xEE);
    }
    for (std::size_t i = 0; i < sequences.size(); ++i) {
      const std::size_t following = std::min(i + 1, sequences.size() - 1);
      PutShort(bytes, sequences[i].ownOffset + i * gap + kSequenceNextOffset,
               static_cast<std::uint16_t>(sequences[following].ownOffset + following * gap));
    }
    PutShort(bytes, kSpuSizeOffset, static_cast<std::uint16_t>(bytes.size()));
    return bytes;
  }
  static SpuDescription Banded() {
    SpuDescription description = Plain(300);
    const Bytes bands = ColconCommand({{400, 401, {{0, {1, 2, 3, 4}, {5, 6, 7, 8}}}}});
    description.sequences.insert(description.sequences.begin() + 1, {50, {bands}});
    return description;
  }
};

TEST_F(SequenceEditTest, DelaysAreWholeFramesInUnits) {
  EXPECT_EQ(DelayFromMs(0, VideoStandard::kPal), 0);
  EXPECT_EQ(DelayFromMs(19, VideoStandard::kPal), 0);
  EXPECT_EQ(DelayFromMs(20, VideoStandard::kPal), 3);  // 3600 / 1024
  EXPECT_EQ(DelayFromMs(1200, VideoStandard::kPal), 105);
  EXPECT_EQ(DelayFromMs(16, VideoStandard::kNtsc), 0);
  EXPECT_EQ(DelayFromMs(17, VideoStandard::kNtsc), 2);  // 3003 / 1024
  EXPECT_EQ(DelayFromMs(1001, VideoStandard::kNtsc), 87);
  EXPECT_EQ(DelayFromMs(-500, VideoStandard::kPal), 0);
  EXPECT_EQ(DelayFromMs(2000000000, VideoStandard::kPal), 65534);  // 18,641 frames
}

TEST_F(SequenceEditTest, AddsInBetweenAndBehindTheLastAndTakesAwayAgain) {
  const Bytes bytes = BuildSpu(Plain(105));
  SubpictureUnit unit = Parsed(bytes, 14);
  const ControlSequence stop = unit.state.sequences[1];
  ASSERT_EQ(AddControlSequence(unit, 0, 40, kStep, context_), Result::kDone);
  ASSERT_EQ(unit.state.sequences.size(), 3U);
  EXPECT_EQ(unit.currentSequence, 1);
  EXPECT_EQ(unit.currentAlphas, (PixelTypeValues{1, 2, 3, 4}));
  EXPECT_EQ(unit.state.sequences[1].delay, 3);
  EXPECT_EQ(unit.state.sequences[0].nextOffset, stop.ownOffset);
  EXPECT_EQ(unit.state.sequences[2].ownOffset, stop.ownOffset + 8);
  EXPECT_EQ(unit.state.sequences[2].nextOffset, stop.ownOffset + 8);
  EXPECT_EQ(unit.state.freeRoom, 6);
  EXPECT_TRUE(unit.state.modified);

  const std::vector<NewCommand> end = {{kStop, {}}, {kEndOfCommands, {}}};
  ASSERT_EQ(AddControlSequence(unit, 2, 2000, end, context_), Result::kDone);
  EXPECT_EQ(unit.state.sequences[3].nextOffset, unit.state.sequences[3].ownOffset);
  EXPECT_EQ(unit.state.sequences[2].nextOffset, unit.state.sequences[3].ownOffset);
  EXPECT_EQ(unit.state.freeRoom, 0);
  ContentOf(unit);

  ASSERT_EQ(RemoveControlSequence(unit, 1, context_), Result::kDone);
  EXPECT_EQ(unit.currentSequence, 1);
  ASSERT_EQ(RemoveControlSequence(unit, -1, context_), Result::kDone);
  EXPECT_EQ(unit.currentSequence, 1);
  EXPECT_EQ(unit.state.bytes, bytes);
  EXPECT_EQ(unit.state.freeRoom, 14);
}

TEST_F(SequenceEditTest, RefusesWithoutATrace) {
  SubpictureUnit unit = Parsed(Plain(105), 7);
  const auto add = [&](int after, const std::vector<NewCommand>& commands) {
    return [this, after, commands](SubpictureUnit& each) {
      return AddControlSequence(each, after, 40, commands, context_);
    };
  };
  ExpectRefusal(unit, kNoSpace, add(0, kStep));
  unit.state.freeRoom = 500;
  ExpectRefusal(unit, kNoSpace, add(2, kStep));
  ExpectRefusal(unit, kNoSpace, add(-1, kStep));
  ExpectRefusal(unit, kNoSpace, add(0, {}));
  ExpectRefusal(unit, kNoSpace, add(0, {{kStop, {}}}));
  for (const int code : {0x00, 0x01, 0x05, 0x06, 0x07, 0x08, 0xFF}) {
    ExpectRefusal(unit, kNoSpace,
                  add(0, {{static_cast<std::uint8_t>(code), {}}, {kEndOfCommands, {}}}));
  }
  const auto remove = [&](int index) {
    return [this, index](SubpictureUnit& each) {
      return RemoveControlSequence(each, index, context_);
    };
  };
  ExpectRefusal(unit, "I can't remove the first DCSQT!", remove(0));
  ExpectRefusal(unit, "", remove(2));
  ExpectRefusal(unit, "", remove(-2));
  ASSERT_EQ(RemoveControlSequence(unit, -1, context_), Result::kDone);
  EXPECT_EQ(unit.state.sequences[0].nextOffset, unit.state.sequences[0].ownOffset);
  ExpectRefusal(unit, "I can't remove the last remaining DCSQT!", remove(-1));

  SubpictureUnit largest = Parsed(Plain(105), 500);
  const int spare = kMaxSpuSize - 7 - largest.state.TotalSize();
  SpuDescription description = Plain(105);
  description.spareBytes = spare;
  largest = Parsed(description, 500);
  ExpectRefusal(largest, kNoSpace, add(0, kStep));
  // A sequence without an end marker would take what is put behind it for its own.
  Bytes cut = BuildSpu(Plain(105));
  cut.pop_back();
  PutShort(cut, kSpuSizeOffset, static_cast<std::uint16_t>(cut.size()));
  SubpictureUnit open = Parsed(cut, 500);
  ExpectRefusal(open, kNoSpace, add(1, kStep));
}

TEST_F(SequenceEditTest, GapsAndBytesBehindTheEndStayWhereTheyAre) {
  SubpictureUnit unit = Parsed(WithGaps(Banded(), 3), 100);
  const Bytes bytes = unit.state.bytes;
  ASSERT_EQ(unit.state.sequences.size(), 3U);
  ASSERT_EQ(unit.state.colconTables.size(), 1U);
  for (const int after : {0, 1, 2}) {
    ASSERT_EQ(AddControlSequence(unit, after, 1000, kStep, context_), Result::kDone);
    EXPECT_EQ(ContentOf(unit).sequences.size(), 4U);
    EXPECT_EQ(unit.state.colconTables.front().sequence, after == 0 ? 2 : 1);
    ASSERT_EQ(RemoveControlSequence(unit, after + 1, context_), Result::kDone);
    EXPECT_EQ(unit.state.bytes, bytes);
  }
  ASSERT_EQ(RemoveControlSequence(unit, 1, context_), Result::kDone);
  EXPECT_TRUE(unit.state.colconTables.empty());
  EXPECT_EQ(ContentOf(unit).sequences.size(), 2U);
}

TEST_F(SequenceEditTest, ChainsThatCannotBeMendedAreLeftAlone) {
  // The second sequence, a stop, stands in a column of the first one's bands.
  SpuDescription description = Plain(105);
  description.sequences.pop_back();
  const Bytes stop = ColconCommand({{400, 401, {{105, {}, {15, 15, 2, 0}}}}});
  description.sequences[0].commands.push_back(stop);
  const SubpictureUnit outer = Parsed(description);
  const std::uint16_t at = outer.state.colconTables[0].bands[0].columns[0].offset;
  Bytes inside = outer.state.bytes;
  PutShort(inside, outer.state.dcsqtOffset + kSequenceNextOffset, at);
  PutShort(inside, at + kSequenceNextOffset, at);
  SubpictureUnit unit = Parsed(inside, 500);
  ASSERT_EQ(unit.state.sequences.size(), 2U);
  ExpectRefusal(unit, kNoSpace, [&](SubpictureUnit& each) {
    return AddControlSequence(each, 0, 40, kStep, context_);
  });
  ExpectRefusal(unit, "",
                [&](SubpictureUnit& each) { return RemoveControlSequence(each, 1, context_); });

  // A bitmap behind the sequences would lose its place.
  SubpictureUnit behind = Parsed(Plain(105), 500);
  const auto offsets = static_cast<std::size_t>(*FindCommand(behind, kSetFieldOffsets, 0));
  Bytes bytes = behind.state.bytes;
  PutShort(bytes, offsets + 1, static_cast<std::uint16_t>(bytes.size()));
  behind = Parsed(bytes, 500);
  ExpectRefusal(behind, kNoSpace, [&](SubpictureUnit& each) {
    return AddControlSequence(each, 0, 40, kStep, context_);
  });
}

TEST_F(SequenceEditTest, RoomIsMadeFromSpareBytesAsFarAsNeeded) {
  SpuDescription description = Plain(105);
  description.spareBytes = 20;
  SubpictureUnit unit = Parsed(description, 10);
  const auto content = ContentOf(unit);
  ASSERT_EQ(MakeRoom(unit, 8, context_), Result::kDone);
  EXPECT_EQ(unit.state.TotalSize(), static_cast<int>(BuildSpu(description).size()));
  ASSERT_EQ(MakeRoom(unit, 16, context_), Result::kDone);
  EXPECT_EQ(unit.state.freeRoom, 16);
  EXPECT_EQ(unit.state.spareRoom, 14);
  EXPECT_EQ(MakeRoom(unit, 40, context_), Result::kFailed);
  EXPECT_EQ(unit.state.freeRoom, 30);
  EXPECT_EQ(unit.state.spareRoom, 0);
  EXPECT_EQ(ContentOf(unit), content);
}

TEST_F(SequenceEditTest, RandomEditsKeepEveryUnitWhole) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    std::mt19937 random(seed);
    const auto upTo = [&random](unsigned most) { return random() % (most + 1); };
    SpuDescription description = seed % 4 == 0 ? Banded() : Plain(static_cast<int>(upTo(900)));
    description.rows = RandomRows(seed, 20, 6, 9);
    description.spareBytes = static_cast<int>(upTo(150));
    if (seed % 5 == 0) description.sequences.pop_back();
    SubpictureUnit unit = Parsed(WithGaps(description, upTo(2)), static_cast<int>(upTo(200)));
    ASSERT_EQ(DecodeBitmap(unit, context_), Result::kDone);
    Bytes script(160);
    for (std::uint8_t& byte : script) byte = static_cast<std::uint8_t>(upTo(255));
    // Mostly sequences that exist.
    for (std::size_t i = 1; i < script.size(); i += 4) script[i] %= 8;
    const SpuContext& context = seed % 2 == 0 ? context_ : ntsc_;
    ASSERT_EQ(RunEditScript(unit, script, context), "") << "seed " << seed;
    EXPECT_EQ(ContentOf(unit).rows, description.rows) << "seed " << seed;
  }
}

}  // namespace
}  // namespace quillomar
