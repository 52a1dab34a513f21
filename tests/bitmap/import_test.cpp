#include "exchange_fixture.h"
#include "spu/colour_edit.h"

namespace quillomar {
namespace {

using namespace test;
using Rows = std::vector<std::string>;

constexpr const char* kNotVersion3 =
    "Error: The bitmap must be standard Windows V.3 bitmap - Not OS2 at the moment!";
constexpr const char* kWrongSize =
    "Error: The bitmap size should match the picture size for this DVD";
constexpr const char* kWrongFormat =
    "Error: The bitmap must be an uncompressed 24bit or 4bit RGB bitmap";
constexpr const char* kTooShort = "Error Couldn't read enough data from bitmap file!";
constexpr const char* kNoRoom =
    "Ooops! The modified encoded subpic does not fit in the available space on the DVD!";

class ImportTest : public ExchangeTest {};

TEST_F(ImportTest, OutAndInGivesTheSamePicture) {
  for (int seed = 1; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    const Rows rows =
        RandomRows(static_cast<unsigned>(seed), seed * 97 % 690 + 2, seed * 13 % 90 + 2, 30);
    SpuDescription description = Subtitle(rows, seed, 400 + seed % 2, 9);
    description.spareBytes = seed % 9;
    SubpictureUnit unit = Decoded(description);
    const Bytes screen = Screen(unit);
    ASSERT_EQ(Export(unit, seed % 3 == 0 ? BmpDepth::k4Bit : BmpDepth::k24Bit), Result::kDone);
    ASSERT_EQ(Import(unit), Result::kDone);
    EXPECT_TRUE(Screen(unit) == screen);
    EXPECT_EQ(unit.state.area.sy % 2, seed % 2);

    const SpuState once = unit.state;
    ASSERT_EQ(Export(unit), Result::kDone);
    ASSERT_EQ(Import(unit), Result::kDone);
    EXPECT_EQ(unit.state, once);
  }
  EXPECT_TRUE(messages_.errors.empty());
}

TEST_F(ImportTest, RefusesInOrder) {
  SubpictureUnit unit = Decoded(Small());
  ExpectRefusal(unit, "Error opening /t.bmp");
  PutFrame(EmptyFrame());
  Bytes& file = files_.Content(kBmpPath);
  // Each fault hides those put in before it.
  file.pop_back();
  ExpectRefusal(unit, kTooShort);
  for (const std::size_t offset : {kBmpBitsOffset, kBmpCompressionOffset}) {
    const std::uint8_t good = file[offset];
    file[offset] = 8;
    ExpectRefusal(unit, kWrongFormat);
    file[offset] = good;
  }
  file[kBmpBitsOffset] = 8;
  file[kBmpHeightOffset] = 0xE0;  // 480 lines
  file[kBmpHeightOffset + 1] = 0x01;
  ExpectRefusal(unit, kWrongSize);
  file[kBmpHeightOffset] = 0xC0;  // -576: rows from top to bottom
  file[kBmpHeightOffset + 1] = 0xFD;
  file[kBmpHeightOffset + 2] = file[kBmpHeightOffset + 3] = 0xFF;
  ExpectRefusal(unit, kWrongSize);
  file[kBmpInfoSizeOffset] = 124;
  ExpectRefusal(unit, kNotVersion3);
  file.resize(53);
  ExpectRefusal(unit, kTooShort);
}

TEST_F(ImportTest, FilesCutOffAnywhereAreRefused) {
  SubpictureUnit unit = Decoded(Small());
  PutFrame(EmptyFrame(), 4);
  const Bytes whole = files_.Content(kBmpPath);
  for (std::ptrdiff_t size = 0; size < 200; ++size) {
    files_.Put(kBmpPath, Bytes(whole.begin(), whole.begin() + size));
    ExpectRefusal(unit, kTooShort);
  }
  Bytes inside = whole;  // rows that would begin inside the headers
  inside[kBmpRowsOffset] = 10;
  files_.Put(kBmpPath, inside);
  ExpectRefusal(unit, kTooShort);
}

TEST_F(ImportTest, PaletteEntriesMapByTheirColour) {
  SubpictureUnit unit = Decoded(Small());
  Bytes frame = Frame({300, 303, 100, 101}, 5);
  frame[100 * 720 + 301] = 6;
  frame[100 * 720 + 302] = 9;
  BmpPalette palette{};
  palette.fill(kColours[0]);
  palette[5] = palette[6] = kColours[3];
  palette[9] = kColours[1];
  files_.Put(kBmpPath, MakeBmp(frame, 720, 4, palette));
  ASSERT_EQ(Import(unit), Result::kDone);
  EXPECT_EQ(PixelRows(unit), (Rows{"3313", "3333"}));
  // Entries behind the number in the header are black, which is type 2.
  files_.Content(kBmpPath)[kBmpColoursUsedOffset] = 9;
  ASSERT_EQ(Import(unit), Result::kDone);
  EXPECT_EQ(PixelRows(unit), (Rows{"3323", "3333"}));
}

TEST_F(ImportTest, TheNewAreaIsTheBoxOfTheContent) {
  const auto imported = [this](const DisplayArea& box) {
    SubpictureUnit unit = Decoded(Small());
    unit.state.horizontalOffset = unit.state.verticalOffset = unit.state.border = 8;
    unit.state.area = {108, 112, 192, 195};
    PutFrame(Frame(box, 1));
    EXPECT_EQ(Import(unit), Result::kDone);
    EXPECT_TRUE(Screen(unit) == Frame(box, 1));
    EXPECT_TRUE(unit.state.modified);
    EXPECT_EQ(unit.state.horizontalOffset + unit.state.verticalOffset + unit.state.border, 0);
    return unit.state.area;
  };
  EXPECT_EQ(imported({0, 719, 0, 575}), (DisplayArea{0, 719, 0, 575}));
  EXPECT_EQ(imported({40, 59, 100, 120}), (DisplayArea{40, 59, 100, 120}));
  // A line of the other field stays in it; a single row takes one along.
  EXPECT_EQ(imported({40, 59, 101, 120}), (DisplayArea{40, 59, 100, 120}));
  EXPECT_EQ(imported({40, 59, 100, 100}), (DisplayArea{40, 59, 100, 101}));
  EXPECT_EQ(imported({40, 59, 575, 575}), (DisplayArea{40, 59, 574, 575}));
}

TEST_F(ImportTest, ABitmapOfBackgroundGetsASmallArea) {
  SubpictureUnit unit = Decoded(Small());
  PutFrame(EmptyFrame());
  ASSERT_EQ(Import(unit), Result::kDone);
  EXPECT_EQ(unit.state.area, (DisplayArea{0, 10, 0, 10}));
  EXPECT_EQ(unit.state.statistics.box, (ContentBox{0, 0, 10, 10}));
  EXPECT_TRUE(unit.state.statistics.empty);
}

TEST_F(ImportTest, TheBackgroundCanStillBeTold) {
  SpuDescription description = Small();
  description.sequences[0].commands = {ContrastCommand({0, 9, 15, 15})};
  SubpictureUnit unit = Decoded(description);
  const auto area = [&](const DisplayArea& box) {
    PutFrame(Frame(box, 1));
    EXPECT_EQ(Import(unit), Result::kDone);
    EXPECT_EQ(unit.state.statistics.backgroundType, 0);
    EXPECT_TRUE(Screen(unit) == Frame(box, 1));
    return unit.state.area;
  };
  EXPECT_EQ(area({40, 59, 100, 120}), (DisplayArea{39, 59, 100, 120}));
  EXPECT_EQ(area({0, 59, 100, 120}), (DisplayArea{0, 59, 98, 120}));
}

TEST_F(ImportTest, ABitmapMayTakeAllRoomAndNoMore) {
  const SpuDescription description = Subtitle(RandomRows(3, 60, 40, 3), 60, 100, 9);
  SubpictureUnit busy = Decoded(description);
  ASSERT_EQ(Export(busy), Result::kDone);
  SpuDescription small = Small();
  small.spareBytes = 20;
  SubpictureUnit unit = Decoded(small);
  ASSERT_EQ(Import(busy), Result::kDone);  // closed up
  const int needed = busy.state.TotalSize() - busy.state.spareRoom - unit.state.TotalSize();
  unit.state.freeRoom = needed - 1;
  ExpectRefusal(unit, kNoRoom);
  unit.state.freeRoom = needed;
  ASSERT_EQ(Import(unit), Result::kDone);
  EXPECT_EQ(unit.state.freeRoom, 0);
  EXPECT_EQ(unit.state.spareRoom, 0);
  EXPECT_TRUE(Screen(unit) == Screen(busy));
}

TEST_F(ImportTest, LaterSequencesThatRepeatThePlaceFollow) {
  SpuDescription description = Small();
  const SubpictureUnit found = Decoded(description);
  const auto withRepeat = [&](int bottom) {
    description.sequences[1].commands = {
        FieldOffsetsCommand(found.state.topOffset, bottom), AreaCommand(found.state.area), {kStop}};
    return Decoded(description);
  };
  PutFrame(Frame({40, 99, 100, 131}, 2));
  SubpictureUnit unit = withRepeat(found.state.bottomOffset);
  ASSERT_EQ(Import(unit), Result::kDone);
  const auto& sequences = unit.state.sequences;
  EXPECT_EQ(sequences[1].commands[0].arguments,
            (std::array<std::uint16_t, 4>{unit.state.topOffset, unit.state.bottomOffset}));
  EXPECT_EQ(sequences[1].commands[1].arguments, (std::array<std::uint16_t, 4>{131, 100, 99, 40}));
  // Another bitmap would be overwritten.
  unit = withRepeat(found.state.bottomOffset + 1);
  ExpectRefusal(unit, kNoRoom);
}

TEST_F(ImportTest, UnusedBytesAreClosedUp) {
  SpuDescription description = Subtitle({"01", "23"}, 100, 200, 9);
  description.spareBytes = 30;
  SubpictureUnit unit = Decoded(description);
  const int rooms = unit.state.freeRoom + unit.state.spareRoom;
  const int codesEnd = unit.state.dcsqtOffset - 30;
  ASSERT_EQ(Export(unit), Result::kDone);
  ASSERT_EQ(Import(unit), Result::kDone);
  EXPECT_EQ(unit.state.dcsqtOffset, codesEnd + 5);
  EXPECT_EQ(unit.state.freeRoom + unit.state.spareRoom, rooms);
  EXPECT_EQ(PixelRows(unit), description.rows);
}

TEST_F(ImportTest, UnusedBytesBeforeTheBitmapAreClosedUp) {
  const SpuDescription description = Subtitle({"01", "23"}, 100, 200, 9);
  const SubpictureUnit plain = Decoded(description);
  SpuDescription loose = description;
  loose.spareBytes = 7;
  SubpictureUnit unit = Decoded(loose);
  // The codes move up to the control sequences.
  Bytes bytes = unit.state.bytes;
  const auto codes = bytes.begin() + 4;
  std::rotate(codes, bytes.begin() + plain.state.dcsqtOffset, codes + (unit.state.dcsqtOffset - 4));
  const auto offsetsAt = static_cast<std::size_t>(*FindCommand(unit, kSetFieldOffsets, 0));
  bytes[offsetsAt + 2] = 11;
  bytes[offsetsAt + 4] = static_cast<std::uint8_t>(plain.state.bottomOffset + 7);
  unit = Decoded(bytes, 100);
  ASSERT_EQ(unit.state.topOffset, 11);
  ASSERT_EQ(Export(unit), Result::kDone);
  ASSERT_EQ(Import(unit), Result::kDone);
  EXPECT_EQ(unit.state.bytes, plain.state.bytes);
  EXPECT_EQ(unit.state.freeRoom, 107);
}

}  // namespace
}  // namespace quillomar
