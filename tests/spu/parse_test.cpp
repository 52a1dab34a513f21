#include "spu/parse.h"

#include "support/unit_test.h"

namespace quillomar {
namespace {

using namespace test;

class ParseTest : public UnitTest {
 protected:
  SubpictureUnit Parsed(const Bytes& bytes) {
    SubpictureUnit unit = MakeUnit(bytes);
    result_ = ParseControlSequences(unit, 0, 0, context_);
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

  Result result_ = Result::kFailed;
};

// Header, then one sequence at 4 with the given next offset, then another at 12.
Bytes Chain(int next, std::uint8_t command = kStart) {
  const auto low = static_cast<std::uint8_t>(next);
  const auto high = static_cast<std::uint8_t>(next >> 8);
  return {0, 18, 0, 4, 0, 0, high, low,           command, kEndOfCommands,
          0, 0,  0, 9, 0, 6, 2,    kEndOfCommands};
}

TEST_F(ParseTest, ChainsEndAtTheirOwnOffsetAndNeverTurnBack) {
  struct Case {
    int next;
    std::uint8_t command;
    std::size_t sequences;
    std::string log, error;
  };
  const std::string serious =
      "Serious error while parsing commands at LBA 1234\nSomething is wrong with this SPU";
  const std::string log = "Error in Parse Command at LBA 1234: Offset to DCSQT ";
  // The second sequence points back into the first.
  for (const Case& each :
       {Case{4, kStart, 1, "", ""}, Case{12, kStart, 2, log + "6", serious},
        Case{18, kStart, 1, log + "18", serious},
        Case{12, 42, 1, "",
             "Inconsistent data in subpic 7 at LBA 1234. Unknown command 42\nIgnoring this "
             "subpic."}}) {
    messages_.errors.clear();
    const SubpictureUnit unit = Parsed(Chain(each.next, each.command));
    EXPECT_EQ(unit.state.sequences.size(), each.sequences);
    EXPECT_EQ(Failed(result_), !each.error.empty());
    EXPECT_EQ(messages_.errors, std::vector<std::string>(each.error.empty() ? 0 : 1, each.error));
    EXPECT_TRUE(each.log.empty() || messages_.Logged(each.log));
    if (each.command == 42) {
      EXPECT_EQ(unit.state.sequences[0].nextOffset, 4);
    }
  }
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

}  // namespace
}  // namespace quillomar
