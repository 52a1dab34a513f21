#include "spu/run_length.h"

#include "support/unit_test.h"

namespace quillomar {
namespace {

using namespace test;
using Rows = std::vector<std::string>;

class RunLengthTest : public UnitTest {
 protected:
  // Decodes `field` as the top field of a one-row bitmap.
  std::string DecodeRow(const Bytes& field, int width) {
    SubpictureUnit unit =
        Parsed(Subtitle({std::string(static_cast<std::size_t>(width), '3')}, 0, 0, 9));
    unit.state.topOffset = static_cast<std::uint16_t>(unit.state.bytes.size());
    unit.state.bytes.insert(unit.state.bytes.end(), field.begin(), field.end());
    EXPECT_EQ(DecodeBitmap(unit, context_), Result::kDone);
    return PixelRows(unit).at(0);
  }
  Bytes EncodeRow(const std::string& row) {
    const SubpictureUnit unit = Decoded(Subtitle({row}, 0, 0, 9));
    const auto right = static_cast<std::int16_t>(row.size() - 1);
    return EncodeBitmap(unit, {0, 0, right, 0}).codes;
  }
};

TEST_F(RunLengthTest, WidthOfACodeFollowsTheRunsLength) {
  struct Case {
    std::size_t length;
    const char* end;
    Bytes codes;
  };
  for (const Case& each :
       {Case{1, "1", {0x65}},                                    // 01 10, then 01 01
        Case{3, "1", {0xE5}},                                    // 11 10
        Case{4, "1", {0x12, 0x50}},                              // 00 0100 10
        Case{15, "1", {0x3E, 0x50}},                             // 00 1111 10
        Case{16, "1", {0x04, 0x25}},                             // 0000 010000 10
        Case{63, "1", {0x0F, 0xE5}},                             // 0000 111111 10
        Case{64, "1", {0x01, 0x02, 0x50}},                       // 000000 01000000 10
        Case{255, "1", {0x03, 0xFE, 0x50}},                      // 000000 11111111 10
        Case{256, "1", {0x03, 0xFE, 0x65}},                      // 255 and 1
        Case{300, "1", {0x03, 0xFE, 0x0B, 0x65}},                // 255 and 45
        Case{63, "", {0x0F, 0xE0}}, Case{64, "", {0x00, 0x02}},  // to the end of the row
        Case{720, "", {0x00, 0x02}}}) {
    const std::string row = std::string(each.length, '2') + each.end;
    EXPECT_EQ(EncodeRow(row), each.codes) << each.length;
    EXPECT_EQ(DecodeRow(each.codes, static_cast<int>(row.size())), row) << each.length;
  }
}

TEST_F(RunLengthTest, RunsAreCutAtTheRowsEndAndNeverLoop) {
  EXPECT_EQ(DecodeRow({0x03, 0xFE}, 5), "22222");      // 255 pixels in a row of five
  EXPECT_EQ(DecodeRow({0x50, 0x00, 0x20}, 3), "122");  // to the end of the row
  EXPECT_EQ(DecodeRow({0x00, 0x06}, 4), "2000");       // a run of 1 in the widest code
  EXPECT_EQ(DecodeRow({}, 4), "0000");                 // zeros past the unit's end
}

TEST_F(RunLengthTest, GathersStatistics) {
  SpuDescription description = Subtitle({"000000", "001000", "000230", "000000"}, 0, 0, 9);
  description.spareBytes = 3;
  SubpictureUnit unit = Decoded(description);
  const BitmapStatistics& statistics = unit.state.statistics;
  EXPECT_EQ(statistics.backgroundType, 0);
  EXPECT_EQ(statistics.pixelCounts, (std::array<std::uint32_t, 4>{21, 1, 1, 1}));
  EXPECT_EQ(statistics.box, (ContentBox{2, 1, 4, 2}));
  EXPECT_FALSE(statistics.empty);
  EXPECT_EQ(unit.state.spareRoom, 3);
  EXPECT_EQ(unit.state.alignedWidth, 8);
  // Rows of 1, 2, 2 and 1 bytes; the last two entries are after the fields' ends.
  const auto& starts = statistics.lineStarts;
  EXPECT_EQ(std::vector(starts.begin(), starts.begin() + 6),
            (std::vector<std::uint16_t>{4, 7, 5, 9, 7, 10}));
  EXPECT_EQ(statistics.fieldEnds, (std::array<int, 2>{7, 10}));
}

TEST_F(RunLengthTest, EmptyBitmapsGetASmallBox) {
  for (const auto& [rows, box] :
       {std::pair(Rows(20, std::string(30, '2')), ContentBox{0, 0, 10, 10}),
        {Rows(4, std::string(3, '2')), ContentBox{0, 0, 2, 3}}}) {
    SpuDescription description = Subtitle(rows, 0, 0, 9);
    description.sequences[0].commands.pop_back();
    const BitmapStatistics statistics = Decoded(description).state.statistics;
    EXPECT_TRUE(statistics.empty);
    EXPECT_EQ(statistics.backgroundType, 2);
    EXPECT_EQ(statistics.box, box);
  }
}

TEST_F(RunLengthTest, AnOpaqueFirstPixelYieldsToTheOnlyTransparentType) {
  using Background = std::pair<PixelTypeValues, int>;
  for (const auto& [alphas, type] :
       {Background{{0, 15, 15, 15}, 0}, Background{{0, 14, 15, 15}, 1},
        Background{{0, 15, 15, 0}, 1}, Background{{15, 15, 15, 15}, 1}}) {
    SpuDescription description = Subtitle({"1100", "1230"}, 0, 0, 9);
    description.sequences[0].commands = {ContrastCommand(alphas)};
    EXPECT_EQ(Decoded(description).state.statistics.backgroundType, type);
  }
}

TEST_F(RunLengthTest, RowsBelowTheFrameCountForTheSpareRoomOnly) {
  SpuDescription description = Subtitle(RandomRows(5, 50, 13, 9), 0, 570, 9);
  description.spareBytes = 8;
  const SubpictureUnit unit = Decoded(description);
  EXPECT_EQ(PixelRows(unit), Rows(description.rows.begin(), description.rows.begin() + 6));
  EXPECT_EQ(unit.state.spareRoom, 8);
}

TEST_F(RunLengthTest, ReencodingCropsToTheContentAndItsMargins) {
  const std::string blank(9, '0');
  const Rows rows = {blank,       blank, blank, blank, blank, "000012000",
                     "000300000", blank, blank, blank, blank};
  // The odd top row 5 takes its even neighbour along, the bottom one row more.
  struct Case {
    CropMargins margins;
    DisplayArea area;
    std::size_t firstRow, firstColumn;
    int spareRoom;
  };
  for (const Case& each :
       {Case{{0, 0}, {103, 105, 204, 207}, 4, 3, 9}, Case{{2, 3}, {101, 107, 202, 210}, 2, 1, 3},
        Case{{50, 50}, {100, 108, 200, 210}, 0, 0, 0}}) {
    SubpictureUnit unit = Decoded(Subtitle(rows, 100, 200, 9));
    EXPECT_EQ(ReencodeBitmap(unit, each.margins, context_), Result::kDone);
    EXPECT_EQ(unit.state.area, each.area);
    EXPECT_EQ(unit.state.areaAsFound, each.area);
    EXPECT_EQ(PixelRows(unit).at(5 - each.firstRow).substr(5 - each.firstColumn - 1, 2), "12");
    EXPECT_EQ(unit.state.spareRoom, each.spareRoom);
    EXPECT_EQ(unit.state.modified, each.firstRow > 0);
  }
}

}  // namespace
}  // namespace quillomar
