// Edits of colours, durations, fades and control sequences.
#include <random>

#include "dvd/big_endian.h"
#include "spu/duration.h"
#include "spu/fade.h"
#include "spu/sequence_edit.h"
#include "spu/visibility.h"
#include "support/edit_script.h"
#include "support/unit_test.h"

namespace quillomar {
namespace {

using namespace test;

const char* const kNoSpace = "Not enough space in the subpic pack to add another DCSQT!";
const std::vector<NewCommand> kStep = {{kSetContrast, {1, 2, 3, 4}}, {kEndOfCommands, {}}};

// Colours and alphas in sequence 0, alphas alone in sequence 1, neither in sequence 2.
SpuDescription Coloured() {
  SpuDescription description = Subtitle({"0000", "0110", "0220"}, 10, 20, 50);
  description.sequences[0].commands = {
      {kStart}, ColourCommand({4, 5, 6, 7}), ContrastCommand({0, 3, 4, 15})};
  description.sequences[1].commands = {ContrastCommand({0, 1, 2, 3})};
  description.sequences.push_back({100, {{kStop}}});
  return description;
}

class EditTest : public UnitTest {};

TEST_F(EditTest, SequencesWithoutTheirOwnValuesShowThoseOfTheFirst) {
  SubpictureUnit unit = Parsed(Coloured());
  EXPECT_EQ(SelectControlSequence(unit, 1), FindCommand(unit, kSetContrast, 1));
  EXPECT_EQ(unit.currentColours, (PixelTypeValues{4, 5, 6, 7}));
  EXPECT_EQ(unit.currentAlphas, (PixelTypeValues{0, 1, 2, 3}));
  for (const int none : {2, 3, -1}) EXPECT_EQ(SelectControlSequence(unit, none), std::nullopt);
  EXPECT_EQ(unit.currentSequence, 2);
  EXPECT_EQ(unit.currentAlphas, (PixelTypeValues{0, 3, 4, 15}));
  EXPECT_EQ(FindCommand(unit, kSetColour, 1), std::nullopt);
}

TEST_F(EditTest, AlphasReachOneTypeTheTextOrAllInTheSequencesAskedAndAlwaysMarkTheUnit) {
  struct Case {
    bool everywhere;
    int sequence, alpha, which;
    PixelTypeValues first, second;
  };
  for (const Case& each :
       {Case{true, 0, 9, kPattern, {0, 9, 4, 15}, {0, 9, 2, 3}},
        Case{false, 1, 15, kAlphaAllButBackground, {0, 3, 4, 15}, {0, 15, 15, 15}},
        Case{false, 1, 7, kAlphaAll, {0, 3, 4, 15}, {7, 7, 7, 7}},
        Case{false, 2, 9, kPattern, {0, 3, 4, 15}, {0, 1, 2, 3}}}) {
    SubpictureUnit unit = Parsed(Coloured());
    unit.allSequences = each.everywhere;
    SelectControlSequence(unit, each.sequence);
    EXPECT_EQ(SetAlpha(unit, 16, each.which, context_), Result::kFailed);
    EXPECT_EQ(SetColour(unit, 16, kPattern), Result::kFailed);
    EXPECT_FALSE(unit.state.modified);
    ASSERT_EQ(SetAlpha(unit, each.alpha, each.which, context_), Result::kDone);
    EXPECT_TRUE(unit.state.modified);
    EXPECT_EQ(AlphasOf(unit, 0), each.first);
    EXPECT_EQ(AlphasOf(unit, 1), each.second);
  }
}

TEST_F(EditTest, MeanAlphaAddsItsHalfBeforeDividing) {
  SubpictureUnit unit = Parsed(Coloured());
  EXPECT_EQ(MeanTextAlpha(unit, context_), 3);  // (3 + 4 + 0.5) / 2; type 3 does not occur
  ASSERT_EQ(SetAlpha(unit, 5, kAlphaAllButBackground, context_), Result::kDone);
  EXPECT_EQ(MeanTextAlpha(unit, context_), 5);
  SubpictureUnit blank = Parsed(Subtitle({"00", "00"}, 0, 0, 9));
  EXPECT_EQ(MeanTextAlpha(blank, context_), 0);
}

TEST_F(EditTest, EveryWholeFrameIsShownAsItWasSet) {
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

TEST_F(EditTest, OnlyAnotherDurationIsWritten) {
  SubpictureUnit unit = Parsed(Plain(104));  // 1183 ms, shown as 1200, which would be 105 units
  for (const int ms : {1180, 1194, 1200, 1219}) {
    ASSERT_EQ(SetDelay(unit, -1, ms, context_), Result::kDone);
    EXPECT_EQ(unit.state.bytes, BuildSpu(Plain(104)));
  }
  EXPECT_FALSE(unit.state.modified);
  ASSERT_EQ(SetDelay(unit, -1, 1220, context_), Result::kDone);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), 1240);
  EXPECT_TRUE(unit.state.modified);
  for (const int index : {0, 2, -2}) {
    EXPECT_EQ(SetDelay(unit, index, 90, context_), Result::kFailed) << index;
  }
  // A stop never comes before what it stops.
  ASSERT_EQ(AddControlSequence(unit, 0, 400, kStep, context_), Result::kDone);
  ASSERT_EQ(SetDelay(unit, -1, -500, context_), Result::kDone);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), 440);
}

TEST_F(EditTest, DelaysRangeToTheNextUnit) {
  SpuDescription description = Plain(300);
  description.sequences.insert(description.sequences.begin() + 1, {100, {{kStop}}});
  SubpictureUnit unit = Parsed(description);
  unit.state.pts = 90089;
  struct Case {
    int index;
    std::optional<std::uint32_t> next;
    VideoStandard standard;
    int smallest, largest;
  };
  constexpr auto kPal = VideoStandard::kPal;
  constexpr auto kNtsc = VideoStandard::kNtsc;
  for (const Case& each : {Case{1, {}, kPal, 40, 734287}, Case{2, {}, kNtsc, 1137 + 33, 734287},
                           Case{-1, 90090 + 180000, kPal, 1137 + 40, 3001 - 1000 - 40},
                           Case{-1, 90090 + 180000, kNtsc, 1137 + 33, 3001 - 1000 - 33},
                           Case{-1, 90189, kPal, 1177, 1177}, Case{-1, 90089, kPal, 1177, 734287},
                           Case{-1, 0xFFFFFFFF, kPal, 1177, 734287}}) {
    const auto limits = DelayRange(unit, each.index, each.next, each.standard);
    ASSERT_TRUE(limits);
    EXPECT_EQ(limits->smallest, each.smallest);
    EXPECT_EQ(limits->largest, each.largest);
  }
  for (const int index : {0, 3, 4, -2}) EXPECT_FALSE(DelayRange(unit, index, {}, kPal)) << index;
  unit.state.sequences.resize(1);
  EXPECT_FALSE(DelayRange(unit, -1, {}, kPal));
}

TEST_F(EditTest, AStopComesAndGoes) {
  SpuDescription endless = Plain(0);
  endless.sequences.pop_back();
  SubpictureUnit unit = Parsed(endless, 6);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), -1);
  ASSERT_EQ(RemoveStopCommand(unit, context_), Result::kDone);
  EXPECT_FALSE(unit.state.modified);
  ASSERT_EQ(AddStopCommand(unit, context_), Result::kDone);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), 40);
  EXPECT_EQ(AddStopCommand(unit, context_), Result::kFailed);
  ASSERT_EQ(RemoveStopCommand(unit, context_), Result::kDone);
  EXPECT_EQ(unit.state.bytes, BuildSpu(endless));

  endless.spareBytes = 5;
  SubpictureUnit full = Parsed(endless, 0);
  ExpectRefusal(full, kNoSpace,
                [&](SubpictureUnit& each) { return AddStopCommand(each, context_); });
  full.state.freeRoom = 1;
  EXPECT_EQ(AddStopCommand(full, ntsc_), Result::kDone);
  EXPECT_EQ(DurationMs(full, VideoStandard::kNtsc), 33);
  endless.sequences[0].commands.push_back({kStop});
  SubpictureUnit single = Parsed(endless);
  ExpectRefusal(single, "I can't remove the last remaining DCSQT!",
                [&](SubpictureUnit& each) { return RemoveStopCommand(each, context_); });
  SpuDescription blinking = Plain(300);
  blinking.sequences.push_back({400, {{kForcedStart}}});
  SubpictureUnit shown = Parsed(blinking);
  ASSERT_EQ(RemoveStopCommand(shown, context_), Result::kDone);
  EXPECT_EQ(shown.state.sequences.size(), 3U);
  ASSERT_EQ(SetForcedStart(shown, false), Result::kDone);
  EXPECT_FALSE(IsForced(shown) || FindCommand(shown, kForcedStart, 2));
}

TEST_F(EditTest, HidingClearsEveryAlpha) {
  SpuDescription description = Plain(300);
  // Ten columns, of which the record holds eight.
  const std::vector<ColconBandDescription::Column> columns(10, {0, {9, 9, 9, 9}, {1, 2, 3, 4}});
  description.sequences[0].commands.push_back(ColconCommand({{400, 401, columns}}));
  description.sequences[1].commands.push_back(ContrastCommand({7, 7, 7, 7}));
  SubpictureUnit unit = Parsed(description);
  ASSERT_EQ(HideUnit(unit), Result::kDone);
  EXPECT_FALSE(IsShown(unit, context_));
  EXPECT_EQ(unit.currentAlphas, PixelTypeValues{});
  EXPECT_EQ(Parsed(unit.state.bytes, 0).state.colconTables, unit.state.colconTables);
  const auto alphas = {std::uint8_t{0x43}, std::uint8_t{0x21}};
  const Bytes& bytes = unit.state.bytes;
  EXPECT_EQ(std::search(bytes.begin(), bytes.end(), alphas.begin(), alphas.end()), bytes.end());
}

TEST_F(EditTest, AFadeRisesToEachTypesOwnAlphaAndIsTakenAwayAgain) {
  struct Case {
    int stop, freeRoom, spareBytes;
    const SpuContext& context;
    std::vector<int> delays;
    PixelTypeValues middle;
  };
  // 16 steps, 9 ms apart, each rounded to whole frames of 3600 / 1024 units; 48 bytes hold six of
  // 71 ms.
  for (const Case& each :
       {Case{105,
             128,
             0,
             context_,
             {0, 0, 0, 3, 3, 3, 3, 7, 7, 7, 7, 7, 10, 10, 10, 10, 14, 105},
             {2, 8, 4, 1}},
        Case{300, 15, 33, ntsc_, {0, 5, 11, 17, 26, 32, 38, 300}, {2, 10, 5, 2}}}) {
    SpuDescription description = Plain(each.stop);
    description.spareBytes = each.spareBytes;
    description.sequences[0].commands[2] = ContrastCommand({2, 15, 8, 3});
    SubpictureUnit unit = Parsed(description, each.freeRoom);
    const Content content = ContentOf(unit);
    EXPECT_FALSE(HasFadeIn(unit));
    ASSERT_EQ(AddFadeIn(unit, false, each.context), Result::kDone);
    std::vector<int> delays;
    for (const auto& sequence : unit.state.sequences) delays.push_back(sequence.delay);
    EXPECT_EQ(delays, each.delays);
    EXPECT_EQ(unit.state.freeRoom + unit.state.spareRoom, 0);
    const int last = unit.currentSequence;
    EXPECT_EQ(last, static_cast<int>(delays.size()) - 2);
    EXPECT_EQ(AlphasOf(unit, 0), (PixelTypeValues{2, 0, 0, 0}));
    EXPECT_EQ(AlphasOf(unit, 1 + last / 2), each.middle);
    EXPECT_EQ(AlphasOf(unit, last), (PixelTypeValues{2, 15, 8, 3}));
    EXPECT_TRUE(HasFadeIn(unit));
    EXPECT_EQ(AddFadeIn(unit, false, ntsc_), Result::kFailed);
    ASSERT_EQ(RemoveFadeIn(unit, each.context), Result::kDone);
    EXPECT_EQ(ContentOf(unit), content);
    EXPECT_EQ(unit.currentSequence, 0);
    EXPECT_EQ(RemoveFadeIn(unit, context_), Result::kFailed);
  }
}

TEST_F(EditTest, FadesAreRefusedWithoutATrace) {
  SpuDescription spare = Plain(87);  // room is made before the refusal
  spare.spareBytes = 100;
  SpuDescription endless = Plain(105);
  endless.sequences.pop_back();
  SpuDescription noStop = Plain(105);
  noStop.sequences[1].commands = {ContrastCommand({0, 1, 1, 1})};
  SpuDescription noContrast = Plain(105);
  noContrast.sequences[0].commands.pop_back();
  struct Case {
    const SpuDescription& description;
    int freeRoom;
    const char* text;
  };
  for (const Case& each :
       {Case{Plain(0), 500, "Duration too short to add fade-in"},
        Case{Plain(105), 31, "Not enough room to add fade-in"},
        Case{Plain(87), 500, "Subtitle too short to add fade-in (minimum 1s)"},
        Case{spare, 0, "Subtitle too short to add fade-in (minimum 1s)"}, Case{endless, 500, ""},
        Case{noStop, 500, ""}, Case{noContrast, 500, ""}}) {
    SubpictureUnit unit = Parsed(each.description, each.freeRoom);
    ExpectRefusal(unit, each.text,
                  [&](SubpictureUnit& tried) { return AddFadeIn(tried, false, context_); });
  }
}

TEST_F(EditTest, OnlyARiseIsAFade) {
  const Bytes low = ContrastCommand({0, 4, 4, 4});
  const Bytes high = ContrastCommand({0, 9, 9, 9});
  struct Case {
    Bytes first, second;
    int delay;
    bool isFade;
  };
  for (const Case& each :
       {Case{low, high, 20, true}, Case{high, low, 20, false}, Case{low, high, 9, false},
        Case{ContrastCommand({0, 0, 4, 4}), high, 20, false},
        Case{low, ColourCommand({0, 9, 9, 9}), 20, false}}) {
    SpuDescription description = Plain(300);
    description.sequences[0].commands[2] = ContrastCommand({0, 1, 1, 1});
    description.sequences.insert(description.sequences.begin() + 1,
                                 {{10, {each.first}}, {each.delay, {each.second}}});
    EXPECT_EQ(HasFadeIn(Parsed(description)), each.isFade);
  }
}

// Unused bytes behind each sequence, as no rule forbids.
Bytes WithGaps(const SubpictureUnit& unit, std::size_t gap) {
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

SpuDescription Banded(SpuDescription description) {
  const Bytes bands = ColconCommand({{400, 401, {{0, {1, 2, 3, 4}, {5, 6, 7, 8}}}}});
  description.sequences.insert(description.sequences.begin() + 1, {50, {bands}});
  return description;
}

TEST_F(EditTest, SequencesAreAddedAndTakenAwayAroundGaps) {
  SubpictureUnit unit = Parsed(WithGaps(Parsed(Banded(Plain(300))), 3), 8);
  const Bytes bytes = unit.state.bytes;
  for (const int after : {0, 1, 2}) {
    ASSERT_EQ(AddControlSequence(unit, after, 1000, kStep, context_), Result::kDone);
    EXPECT_EQ(unit.currentSequence, after + 1);
    EXPECT_EQ(unit.currentAlphas, (PixelTypeValues{1, 2, 3, 4}));
    EXPECT_EQ(ContentOf(unit).sequences.at(static_cast<std::size_t>(after) + 1).first, 87);
    EXPECT_EQ(unit.state.colconTables.front().sequence, after == 0 ? 2 : 1);
    ASSERT_EQ(RemoveControlSequence(unit, after == 2 ? -1 : after + 1, context_), Result::kDone);
    EXPECT_EQ(unit.currentSequence, std::min(after + 1, 2));
    EXPECT_EQ(unit.state.bytes, bytes);
  }
}

TEST_F(EditTest, SequencesAreRefusedWithoutATrace) {
  const auto refuseToAdd = [&](SubpictureUnit unit, int after, const std::vector<NewCommand>& add) {
    ExpectRefusal(unit, kNoSpace, [&](SubpictureUnit& each) {
      return AddControlSequence(each, after, 40, add, context_);
    });
  };
  const auto refuseToRemove = [&](SubpictureUnit unit, int index, const char* text) {
    ExpectRefusal(unit, text, [&](SubpictureUnit& each) {
      return RemoveControlSequence(each, index, context_);
    });
  };
  SubpictureUnit unit = Parsed(Plain(105), 500);
  refuseToAdd(Parsed(Plain(105), 7), 0, kStep);
  refuseToAdd(unit, 2, kStep);
  refuseToAdd(unit, -1, kStep);
  refuseToAdd(unit, 0, {});
  refuseToAdd(unit, 0, {{kStop, {}}});
  for (const int code : {0x00, 0x01, 0x05, 0x06, 0x07, 0x08, 0xFF}) {
    refuseToAdd(unit, 0, {{static_cast<std::uint8_t>(code), {}}, {kEndOfCommands, {}}});
  }
  refuseToRemove(unit, 0, "I can't remove the first DCSQT!");
  refuseToRemove(unit, 2, "");
  refuseToRemove(unit, -2, "");
  SpuDescription largest = Plain(105);
  largest.spareBytes = kMaxSpuSize - 7 - unit.state.TotalSize();
  refuseToAdd(Parsed(largest, 500), 0, kStep);
  // A sequence without an end marker would take what is put behind it for its own.
  Bytes cut = unit.state.bytes;
  cut.pop_back();
  PutShort(cut, kSpuSizeOffset, static_cast<std::uint16_t>(cut.size()));
  refuseToAdd(Parsed(cut, 500), 1, kStep);
  // A bitmap behind the sequences would lose its place.
  Bytes behind = unit.state.bytes;
  PutShort(behind, static_cast<std::size_t>(*FindCommand(unit, kSetFieldOffsets, 0)) + 1,
           static_cast<std::uint16_t>(behind.size()));
  refuseToAdd(Parsed(behind, 500), 0, kStep);
  ASSERT_EQ(RemoveControlSequence(unit, -1, context_), Result::kDone);
  refuseToRemove(unit, -1, "I can't remove the last remaining DCSQT!");

  // The second sequence, a stop, stands in a column of the first one's bands.
  SpuDescription knotted = Plain(105);
  knotted.sequences.pop_back();
  knotted.sequences[0].commands.push_back(ColconCommand({{400, 401, {{105, {}, {15, 15, 2, 0}}}}}));
  const SubpictureUnit outer = Parsed(knotted);
  const std::uint16_t at = outer.state.colconTables[0].bands[0].columns[0].offset;
  Bytes inside = outer.state.bytes;
  PutShort(inside, outer.state.dcsqtOffset + kSequenceNextOffset, at);
  PutShort(inside, at + kSequenceNextOffset, at);
  refuseToAdd(Parsed(inside, 500), 0, kStep);
  refuseToRemove(Parsed(inside, 500), 1, "");
}

TEST_F(EditTest, RandomEditsKeepEveryUnitWhole) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    std::mt19937 random(seed);
    const auto upTo = [&random](unsigned most) { return random() % (most + 1); };
    SpuDescription description = Plain(static_cast<int>(upTo(900)));
    if (seed % 4 == 0) description = Banded(description);
    description.rows = RandomRows(seed, 20, 6, 9);
    description.spareBytes = static_cast<int>(upTo(150));
    if (seed % 5 == 0) description.sequences.pop_back();
    const Bytes bytes = WithGaps(Parsed(description), upTo(2));
    SubpictureUnit unit = Parsed(bytes, static_cast<int>(upTo(200)));
    ASSERT_EQ(DecodeBitmap(unit, context_), Result::kDone);
    Bytes script(160);
    for (std::uint8_t& byte : script) byte = static_cast<std::uint8_t>(upTo(255));
    for (std::size_t i = 0; i < script.size(); i += 4) {
      // Mostly sequences that exist, and no moves: the rows are compared.
      script[i] %= 0xC0;
      script[i + 1] %= 8;
    }
    const SpuContext& context = seed % 2 == 0 ? context_ : ntsc_;
    ASSERT_EQ(RunEditScript(unit, script, context), "") << "seed " << seed;
    EXPECT_EQ(ContentOf(unit).rows, description.rows) << "seed " << seed;
  }
}

}  // namespace
}  // namespace quillomar
