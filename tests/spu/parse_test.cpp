#include "spu/parse.h"

#include <gtest/gtest.h>

#include "spu/colour_edit.h"
#include "spu/run_length.h"
#include "support/message_collector.h"
#include "support/spu_builder.h"

namespace quillomar {
namespace {

using namespace test;

constexpr const char* kParseError =
    "Serious error while parsing commands at LBA 1234\nSomething is wrong with this SPU";

class ParseTest : public testing::Test {
 protected:
  SpuContext Context(VideoStandard standard = VideoStandard::kPal) {
    return {messages_.reporter, limit_, standard};
  }
  SubpictureUnit Parsed(const Bytes& bytes) {
    SubpictureUnit unit = MakeUnit(bytes);
    result_ = ParseControlSequences(unit, 0, 0, Context());
    return unit;
  }
  std::string Dump(const SubpictureUnit& unit, VideoStandard standard) {
    std::string text;
    std::string line;
    int sequence = 0;
    int command = -1;
    while (!Failed(DumpCommands(unit, standard, line, sequence, command))) text += line;
    EXPECT_EQ(sequence, 0);
    EXPECT_EQ(command, -1);
    return text;
  }

  MessageCollector messages_;
  ReportLimit limit_{messages_.reporter};
  Result result_ = Result::kFailed;
};

TEST_F(ParseTest, ReadsEveryCommandWithItsPlaceAndArguments) {
  SpuDescription description = Subtitle({"00000", "01230", "00000"}, 0x123, 0x1FE, 200);
  description.sequences[0].commands = {
      {kForcedStart}, ColourCommand({1, 2, 3, 4}), ContrastCommand({5, 6, 7, 8})};
  const SubpictureUnit unit = Parsed(BuildSpu(description));
  ASSERT_EQ(result_, Result::kDone);
  const SpuState& state = unit.state;
  ASSERT_EQ(state.sequences.size(), 2U);
  const ControlSequence& first = state.sequences[0];
  const ControlSequence& second = state.sequences[1];
  EXPECT_EQ(first.ownOffset, state.dcsqtOffset);
  EXPECT_EQ(first.nextOffset, second.ownOffset);
  EXPECT_EQ(second.nextOffset, second.ownOffset);
  EXPECT_EQ(second.delay, 200);
  const std::uint16_t at = state.dcsqtOffset + 4;
  const auto place = [at](int more) { return static_cast<std::uint16_t>(at + more); };
  const std::vector<SpuCommand> expected = {
      {kForcedStart, place(0), 0, {}},
      {kSetColour, place(1), 4, {1, 2, 3, 4}},
      {kSetContrast, place(4), 4, {5, 6, 7, 8}},
      {kSetDisplayArea, place(7), 4, {0x200, 0x1FE, 0x127, 0x123}},
      {kSetFieldOffsets, place(14), 2, {4, state.bottomOffset, 0, 0}},
      {kEndOfCommands, place(19), 0, {}},
  };
  EXPECT_EQ(first.commands, expected);
  EXPECT_EQ(state.area, (DisplayArea{0x123, 0x127, 0x1FE, 0x200}));
  EXPECT_EQ(state.areaAsFound, state.area);
  EXPECT_EQ(state.width, 5);
  EXPECT_EQ(state.alignedWidth, 8);
  EXPECT_EQ(state.height, 3);
}

TEST_F(ParseTest, LaterSequencesDoNotMoveThePicture) {
  SpuDescription description = Subtitle({"00000000", "00000000"}, 10, 570, 200);
  description.sequences[1].commands = {AreaCommand({1, 2, 3, 4}), FieldOffsetsCommand(9, 9)};
  const SubpictureUnit unit = Parsed(BuildSpu(description));
  EXPECT_EQ(unit.state.area, (DisplayArea{10, 17, 570, 571}));
  EXPECT_EQ(unit.state.topOffset, 4);
  EXPECT_EQ(unit.state.alignedWidth, 8);
  EXPECT_EQ(unit.state.sequences[1].commands[1].arguments, (std::array<std::uint16_t, 4>{9, 9}));
}

TEST_F(ParseTest, HeightEndsAtTheFrameAndTurnedAreasHaveNoBitmap) {
  const Bytes tall = BuildSpu(Subtitle(std::vector<std::string>(20, "0000"), 0, 470, 9));
  SubpictureUnit unit = MakeUnit(tall);
  ASSERT_EQ(ParseControlSequences(unit, 0, 0, Context(VideoStandard::kNtsc)), Result::kDone);
  EXPECT_EQ(unit.state.height, 10);

  for (const DisplayArea area : {DisplayArea{9, 8, 0, 5}, DisplayArea{0, 5, 9, 8},
                                 DisplayArea{0, 5, 576, 900}, DisplayArea{4095, 0, 4095, 0}}) {
    Bytes bytes = tall;
    const auto at = static_cast<std::ptrdiff_t>(*FindCommand(unit, kSetDisplayArea, 0));
    const Bytes command = AreaCommand(area);
    std::copy(command.begin(), command.end(), bytes.begin() + at);
    SubpictureUnit turned = Parsed(bytes);
    EXPECT_EQ(result_, Result::kDone);
    EXPECT_EQ(turned.state.width * turned.state.height, 0);
    EXPECT_EQ(DecodeBitmap(turned, Context()), Result::kFailed);
  }
}

TEST_F(ParseTest, KeepsTheAreaAsFoundOfADecodedUnit) {
  SubpictureUnit unit = Parsed(BuildSpu(Subtitle({"0000", "0110"}, 10, 20, 9)));
  ASSERT_EQ(DecodeBitmap(unit, Context()), Result::kDone);
  const Bytes moved = AreaCommand({12, 15, 30, 31});
  std::copy(moved.begin(), moved.end(),
            unit.state.bytes.begin() + *FindCommand(unit, kSetDisplayArea, 0));
  ASSERT_EQ(ParseControlSequences(unit, 0, 0, Context()), Result::kDone);
  EXPECT_EQ(unit.state.area, (DisplayArea{12, 15, 30, 31}));
  EXPECT_EQ(unit.state.areaAsFound, (DisplayArea{10, 13, 20, 21}));
}

// Header, then one sequence at 4 with the given next offset, then another at 12.
Bytes Chain(int next, std::uint8_t command = kStart) {
  const auto low = static_cast<std::uint8_t>(next);
  const auto high = static_cast<std::uint8_t>(next >> 8);
  return {0, 18, 0, 4, 0, 0, high, low,           command, kEndOfCommands,
          0, 0,  0, 9, 0, 6, 2,    kEndOfCommands};
}

TEST_F(ParseTest, ChainsEndAtTheirOwnOffsetAndNeverTurnBack) {
  EXPECT_EQ(Parsed(Chain(4)).state.sequences.size(), 1U);
  EXPECT_EQ(result_, Result::kDone);

  // The second sequence points back into the first.
  EXPECT_EQ(Parsed(Chain(12)).state.sequences.size(), 2U);
  EXPECT_EQ(result_, Result::kFailed);
  EXPECT_TRUE(messages_.Logged("Error in Parse Command at LBA 1234: Offset to DCSQT 6"));
  ASSERT_EQ(messages_.errors.size(), 1U);
  EXPECT_EQ(messages_.errors[0], kParseError);

  EXPECT_EQ(Parsed(Chain(18)).state.sequences.size(), 1U);
  EXPECT_EQ(result_, Result::kFailed);
  EXPECT_TRUE(messages_.Logged("Error in Parse Command at LBA 1234: Offset to DCSQT 18"));
}

TEST_F(ParseTest, SequencesThatOverlapThroughoutTheUnitAreRefused) {
  // Every third byte begins a sequence whose commands run to the unit's end.
  Bytes bytes(60000, 0);
  bytes[3] = 4;
  for (std::size_t own = 4; own + 8 < bytes.size(); own += 3) {
    bytes[own + 2] = static_cast<std::uint8_t>((own + 3) >> 8U);
    bytes[own + 3] = static_cast<std::uint8_t>(own + 3);
    bytes[own + 4] = kSetColour;
  }
  const SubpictureUnit unit = Parsed(bytes);
  EXPECT_EQ(result_, Result::kFailed);
  EXPECT_LT(unit.state.sequences.size(), 10U);
  ASSERT_EQ(messages_.errors.size(), 1U);
}

TEST_F(ParseTest, UnknownCommandsCloseTheChainWithAMessage) {
  const SubpictureUnit unit = Parsed(Chain(12, 0x2A));
  EXPECT_EQ(result_, Result::kFailed);
  ASSERT_EQ(unit.state.sequences.size(), 1U);
  EXPECT_EQ(unit.state.sequences[0].nextOffset, 4);
  ASSERT_EQ(messages_.errors.size(), 1U);
  EXPECT_EQ(messages_.errors[0],
            "Inconsistent data in subpic 7 at LBA 1234. Unknown command 42\nIgnoring this subpic.");
  for (int i = 0; i < 4; ++i) Parsed(Chain(12, 0xFE));
  EXPECT_EQ(messages_.errors.size(), 4U);
  EXPECT_EQ(messages_.errors[3],
            "Inconsistent data in subpic 7 at LBA 1234. Unknown command 254\nIgnoring this "
            "subpic.\nI won't report this error again");
  EXPECT_EQ(limit_.Count(), 5);
}

TEST_F(ParseTest, DelaysAreWholeFramesRoundedUp) {
  SubpictureUnit unit = MakeUnit({});
  const auto delays = [&unit](std::uint16_t units) {
    unit.state.sequences.assign(2, {});
    unit.state.sequences[1].delay = units;
    return std::pair(DelayMs(unit, 1, VideoStandard::kPal),
                     DelayMs(unit, -1, VideoStandard::kNtsc));
  };
  EXPECT_EQ(delays(0), std::pair(0, 0));
  EXPECT_EQ(delays(1), std::pair(40, 33));
  EXPECT_EQ(delays(105), std::pair(1200, 1201));
  EXPECT_EQ(delays(225), std::pair(2560, 2569));  // 64 PAL frames exactly
  EXPECT_EQ(delays(65535), std::pair(745680, 745644));
  EXPECT_EQ(DelayMs(unit, 2, VideoStandard::kPal), 0);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), 745680);
  unit.state.sequences.resize(1);
  EXPECT_EQ(DurationMs(unit, VideoStandard::kPal), -1);
}

TEST_F(ParseTest, DumpsEveryCommandToTheCharacter) {
  SpuDescription description = Subtitle({"0000", "0110"}, 10, 20, 105);
  description.sequences[0].commands.push_back(ColconCommand(
      {{100, 120, {{8, {1, 2, 3, 4}, {5, 6, 7, 8}}, {90, {0, 0, 0, 1}, {15, 15, 15, 15}}}},
       {121, 130, {}}}));
  description.sequences[1].commands.insert(description.sequences[1].commands.begin(),
                                           Bytes{kForcedStart});
  const SubpictureUnit unit = Parsed(BuildSpu(description));
  ASSERT_EQ(result_, Result::kDone);
  EXPECT_TRUE(messages_.Logged("Found CHG_COLCON, 2 bands defined"));
  EXPECT_EQ(Dump(unit, VideoStandard::kNtsc),
            "DCSQT: 0\n"
            "  Start\n"
            "  Set Color: e2=3 e1=2 p=1 b=0\n"
            "  Set Transparency: e2=15 e1=15 p=15 b=0\n"
            "  CHG_COLCON\n\\par "
            "  Number of bands 2\n\\par "
            "   0 - Number of columns 2\n\\par "
            "    Top Line 100\n\\par "
            "    Bot. Line 120\n\\par "
            "    0 -- Start column 8\n\\par "
            "     New colors: 1 2 3 4\n\\par "
            "     New alphas: 5 6 7 8\n\\par "
            "    1 -- Start column 90\n\\par "
            "     New colors: 0 0 0 1\n\\par "
            "     New alphas: 15 15 15 15\n\\par "
            "   1 - Number of columns 0\n\\par "
            "    Top Line 121\n\\par "
            "    Bot. Line 130\n\\par "
            "  Set Display Area: sx=10 ex=13 sy=20 ey=21 \n"
            "  Set field indexes\n"
            "  End of commands\n"
            "DCSQT: 1 -- Delay 1.201s\n"
            "  Forced Start\n"
            "  Stop\n"
            "  End of commands\n");
}

TEST_F(ParseTest, ColconStopsAtSixtyFourBandsAndSkipsColumnsPastTheEighth) {
  ColconBandDescription wide{1, 2, {}};
  for (int i = 0; i < 15; ++i) wide.columns.push_back({i, {}, {}});
  SpuDescription description = Subtitle({"0"}, 0, 0, 9);
  auto& commands = description.sequences[0].commands;
  commands = {ColconCommand(std::vector(64, wide)), {kStart}};
  const SubpictureUnit full = Parsed(BuildSpu(description));
  ASSERT_EQ(result_, Result::kDone);
  ASSERT_EQ(full.state.colconTables.size(), 1U);
  ASSERT_EQ(full.state.colconTables[0].bands.size(), 64U);
  EXPECT_EQ(full.state.colconTables[0].bands[63].columns.size(), 8U);
  EXPECT_EQ(full.state.sequences[0].commands[1].code, kStart);

  // Without its end marker the area ends after the 64th band all the same.
  commands[0].resize(commands[0].size() - kColconEndSize);
  EXPECT_EQ(Parsed(BuildSpu(description)).state.sequences[0].commands[1].code, kStart);
  EXPECT_EQ(result_, Result::kDone);
}

TEST_F(ParseTest, ForcedAndShown) {
  SpuDescription description = Subtitle({"0000", "0110"}, 10, 20, 105);
  SubpictureUnit unit = Parsed(BuildSpu(description));
  EXPECT_FALSE(IsForced(unit));
  EXPECT_TRUE(IsShown(unit, Context()));

  // Only types that do not occur are visible.
  auto& commands = description.sequences[0].commands;
  commands = {{kForcedStart}, ContrastCommand({0, 0, 15, 15})};
  unit = Parsed(BuildSpu(description));
  EXPECT_TRUE(IsForced(unit));
  EXPECT_FALSE(IsShown(unit, Context()));

  description.sequences[1].commands.push_back(ContrastCommand({0, 1, 0, 0}));
  unit = Parsed(BuildSpu(description));
  EXPECT_TRUE(IsShown(unit, Context()));
  description.sequences[0].commands.clear();
  unit = Parsed(BuildSpu(description));
  EXPECT_FALSE(IsShown(unit, Context()));
}

// Whatever the bytes, reading ends and stays inside them (the sanitizers watch).
TEST_F(ParseTest, CutAndFlippedUnitsNeverEscape) {
  SpuDescription description = Subtitle(RandomRows(1, 40, 9, 20), 100, 470, 105);
  description.sequences[0].commands.push_back(
      ColconCommand({{100, 120, {{8, {1, 2, 3, 4}, {5, 6, 7, 8}}}}}));
  const Bytes whole = BuildSpu(description);
  const auto read = [this](const Bytes& bytes) {
    SubpictureUnit unit = Parsed(bytes);
    if (!Failed(DecodeBitmap(unit, Context()))) {
      EXPECT_EQ(unit.pixels.size(), static_cast<std::size_t>(unit.state.width) *
                                        static_cast<std::size_t>(unit.state.height));
    }
    Dump(unit, VideoStandard::kPal);
    static_cast<void>(ReencodeBitmap(unit, {}, Context()));
  };
  for (std::size_t size = 0; size < whole.size(); ++size) {
    read(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int flip : {0x01, 0x10, 0x80, 0xFF}) {
      Bytes bytes = whole;
      bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ flip);
      read(bytes);
    }
  }
}

}  // namespace
}  // namespace quillomar
