#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "base/platform.h"
#include "bitmap/bitmap_export.h"
#include "bitmap/bitmap_import.h"
#include "bitmap/bmp.h"
#include "support/unit_test.h"

namespace quillomar {
namespace {

using namespace test;
using Rows = std::vector<std::string>;

constexpr const char* kBmpPath = "/t.bmp";
constexpr TypeColours kColours = {Rgb{10, 20, 30}, Rgb{250, 240, 1}, Rgb{0, 0, 0}, Rgb{9, 99, 200}};

// Units and the PAL frames that they are exchanged as.
class ExchangeTest : public UnitTest {
 protected:
  static SpuDescription Small() {
    return Subtitle({"00000", "01230", "03210", "00000"}, 100, 200, 9);
  }
  Result Export(SubpictureUnit& unit, BmpDepth depth = BmpDepth::k24Bit) {
    return ExportBmp(unit, kBmpPath, depth, kColours, files_, context_);
  }
  Result Import(SubpictureUnit& unit) {
    return ImportBmp(unit, kBmpPath, kColours, files_, context_);
  }
  // A frame of type 0 with one rectangle of another.
  static Bytes Frame(const DisplayArea& box, std::uint8_t type) {
    Bytes frame(std::size_t{720} * 576, 0);
    for (std::size_t y = box.sy; y <= box.ey; ++y) {
      for (std::size_t x = box.sx; x <= box.ex; ++x) frame[y * 720 + x] = type;
    }
    return frame;
  }
  static Bytes EmptyFrame() { return Frame({1, 0, 1, 0}, 0); }
  void PutFrame(const Bytes& frame, int bits = 24) {
    BmpPalette palette{};
    std::copy(kColours.begin(), kColours.end(), palette.begin());
    files_.Put(kBmpPath, MakeBmp(frame, 720, bits, palette));
  }
  // Fails with this message and leaves everything as it was.
  void ExpectRefusal(SubpictureUnit& unit, const char* text) {
    messages_.errors.clear();
    const SubpictureUnit before = unit;
    EXPECT_EQ(Import(unit), Result::kFailed);
    EXPECT_EQ(messages_.errors, std::vector<std::string>{text});
    EXPECT_EQ(unit.state, before.state);
    EXPECT_EQ(unit.pixels, before.pixels);
  }
  // The frame of types that a reader of the unit's bytes alone shows.
  Bytes Screen(const SubpictureUnit& unit) {
    const SubpictureUnit reader = Decoded(unit.state.bytes, 0);
    EXPECT_EQ(reader.pixels, unit.pixels);
    EXPECT_EQ(reader.state.area, unit.state.areaAsFound);
    const SpuState& state = reader.state;
    Bytes frame(std::size_t{720} * 576, static_cast<std::uint8_t>(state.statistics.backgroundType));
    const auto width = static_cast<std::size_t>(state.width);
    for (std::size_t i = 0; i < reader.pixels.size(); ++i) {
      frame[(state.area.sy + i / width) * 720 + state.area.sx + i % width] = reader.pixels[i];
    }
    return frame;
  }

  MemoryFileSystem& files_ = messages_.files;
};

TEST_F(ExchangeTest, WritesTheHeadersAndTheBottomRowFirst) {
  SpuDescription description = Small();
  description.x = 0;
  description.y = 572;
  SubpictureUnit unit = Decoded(description);
  ASSERT_EQ(Export(unit), Result::kDone);
  const Bytes wide = files_.Content(kBmpPath);
  const Bytes header = {'B', 'M', 0x36, 0xFC, 0x12, 0, 0,    0,    0, 0, 0x36, 0, 0,  0, 40, 0,
                        0,   0,   0xD0, 0x02, 0,    0, 0x40, 0x02, 0, 0, 1,    0, 24, 0, 0,  0,
                        0,   0,   0x00, 0xFC, 0x12, 0, 0,    0,    0, 0, 0,    0, 0,  0, 0,  0};
  EXPECT_TRUE(std::equal(header.begin(), header.end(), wide.begin()));
  // The third row of the bitmap is the second from the bottom: types 0 3 2 as blue, green, red.
  const Bytes pixels = {30, 20, 10, 200, 99, 9, 0, 0, 0};
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), wide.begin() + 54 + 3 * 720));
}

TEST_F(ExchangeTest, HiddenRowsAndWhatLiesOutsideTheFrameAreNotDrawn) {
  SpuDescription description = Small();
  description.x = 718;
  SubpictureUnit unit = Decoded(description);
  // Moved to the frame's end, its first two rows hidden.
  unit.state.area = {718, 722, 575, 576};
  unit.state.height = 1;
  unit.state.hiddenRows = 2;
  ASSERT_EQ(Export(unit, BmpDepth::k4Bit), Result::kDone);
  Bytes rows(files_.Content(kBmpPath).begin() + 118, files_.Content(kBmpPath).end());
  EXPECT_EQ(rows[359], 0x03);
  rows[359] = 0;
  EXPECT_EQ(std::count(rows.begin(), rows.end(), 0), static_cast<std::ptrdiff_t>(rows.size()));
}

TEST_F(ExchangeTest, FailedExportsLeaveNoFileAndSayNothing) {
  SubpictureUnit unit = Decoded(Small());
  files_.FailWritesFrom(0);
  EXPECT_EQ(Export(unit), Result::kFailed);
  EXPECT_FALSE(files_.Exists(kBmpPath));
  files_.FailWritesFrom(-1);
  unit.complete = false;
  unit.ReleasePixels();
  EXPECT_EQ(Export(unit), Result::kFailed);
  EXPECT_EQ(ExportPpm(unit, kBmpPath, {}, kColours, files_, context_), Result::kFailed);
  EXPECT_EQ(Import(unit), Result::kFailed);
  EXPECT_FALSE(files_.Exists(kBmpPath));
  EXPECT_TRUE(messages_.errors.empty());
}

TEST_F(ExchangeTest, PpmScales) {
  SubpictureUnit unit = Decoded(Subtitle({"01230", "12301", "23012"}, 100, 200, 9));
  // The file with a digit for each colour.
  const auto types = [&](PpmScale scale) {
    EXPECT_EQ(ExportPpm(unit, "/t.ppm", scale, kColours, files_, context_), Result::kDone);
    const Bytes& file = files_.Content("/t.ppm");
    std::string text(file.begin(), file.end());
    const std::size_t start = text.find("\n255\n") + 5;
    text.resize(start);
    for (std::size_t i = start; i < file.size(); i += 3) {
      const Rgb colour{file[i], file.at(i + 1), file.at(i + 2)};
      const auto at = std::find(kColours.begin(), kColours.end(), colour);
      text += static_cast<char>('0' + (at - kColours.begin()));
    }
    return text;
  };
  using Scaled = std::pair<PpmScale, const char*>;
  for (const auto& [scale, expected] :
       {Scaled{{1, 1}, "5 3\n255\n012301230123012"}, Scaled{{2, 1}, "2 3\n255\n021320"},
        Scaled{{1.5, 1.5}, "3 2\n255\n023201"},        // columns 0, 2, 3; rows 0, 2
        Scaled{{5, 0.5}, "1 5\n255\n01122"},           // rows 0, 1, 1, 2, 2
        Scaled{{0.5, 3}, "10 1\n255\n0112233000"}}) {  // the last column stays inside
    EXPECT_EQ(types(scale), std::string("P6\n") + expected);
  }
  for (const double scale : {0.0, -1.0, 6.0, 1e-9, 1e300, std::nan(""), HUGE_VAL}) {
    EXPECT_EQ(ExportPpm(unit, "/x", {scale, 1}, kColours, files_, context_), Result::kFailed);
  }
  EXPECT_EQ(ExportPpm(unit, "/x", {1, 1e-9}, kColours, files_, context_), Result::kFailed);
  EXPECT_FALSE(files_.Exists("/x"));
}

constexpr const char* kNotVersion3 =
    "Error: The bitmap must be standard Windows V.3 bitmap - Not OS2 at the moment!";
constexpr const char* kWrongSize =
    "Error: The bitmap size should match the picture size for this DVD";
constexpr const char* kWrongFormat =
    "Error: The bitmap must be an uncompressed 24bit or 4bit RGB bitmap";
constexpr const char* kTooShort = "Error Couldn't read enough data from bitmap file!";
constexpr const char* kNoRoom =
    "Ooops! The modified encoded subpic does not fit in the available space on the DVD!";

TEST_F(ExchangeTest, OutAndInGivesTheSamePicture) {
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
  }
  EXPECT_TRUE(messages_.errors.empty());
}

TEST_F(ExchangeTest, RefusesInOrder) {
  SubpictureUnit unit = Decoded(Small());
  ExpectRefusal(unit, "Error opening /t.bmp");
  PutFrame(EmptyFrame());
  files_.Content(kBmpPath).pop_back();
  ExpectRefusal(unit, kTooShort);
  struct Fault {
    std::size_t offset;
    Bytes bytes;
    const char* text;
  };
  // Each fault hides those put in before it.
  for (const Fault& fault :
       {Fault{kBmpCompressionOffset, {8}, kWrongFormat},
        Fault{kBmpCompressionOffset, {0}, kTooShort}, Fault{kBmpBitsOffset, {8}, kWrongFormat},
        Fault{kBmpHeightOffset, {0xE0, 0x01}, kWrongSize},  // 480 lines
        // -576: rows from top to bottom
        Fault{kBmpHeightOffset, {0xC0, 0xFD, 0xFF, 0xFF}, kWrongSize},
        Fault{kBmpInfoSizeOffset, {124}, kNotVersion3}}) {
    std::copy(fault.bytes.begin(), fault.bytes.end(),
              files_.Content(kBmpPath).begin() + static_cast<std::ptrdiff_t>(fault.offset));
    ExpectRefusal(unit, fault.text);
  }
  files_.Content(kBmpPath).resize(53);
  ExpectRefusal(unit, kTooShort);

  PutFrame(EmptyFrame(), 4);
  Bytes inside = files_.Content(kBmpPath);  // rows that would begin inside the headers
  inside[kBmpRowsOffset] = 10;
  files_.Put(kBmpPath, inside);
  ExpectRefusal(unit, kTooShort);
  inside.resize(54 + 63);  // a palette cut off
  files_.Put(kBmpPath, inside);
  ExpectRefusal(unit, kTooShort);
}

TEST_F(ExchangeTest, PaletteEntriesMapByTheirColour) {
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

TEST_F(ExchangeTest, TheNewAreaIsTheBoxOfTheContent) {
  constexpr PixelTypeValues kPlain{0, 15, 15, 15};
  constexpr PixelTypeValues kBackgroundByFirstPixel{0, 9, 15, 15};
  struct Case {
    PixelTypeValues alphas;
    DisplayArea content, area;
  };
  // A line of the other field stays in it; a single row takes one along, and where only the first
  // pixel tells the background, so does a corner.
  for (const Case& each : {Case{kPlain, {0, 719, 0, 575}, {0, 719, 0, 575}},
                           Case{kPlain, {40, 59, 100, 120}, {40, 59, 100, 120}},
                           Case{kPlain, {40, 59, 101, 120}, {40, 59, 100, 120}},
                           Case{kPlain, {40, 59, 100, 100}, {40, 59, 100, 101}},
                           Case{kPlain, {40, 59, 575, 575}, {40, 59, 574, 575}},
                           Case{kBackgroundByFirstPixel, {40, 59, 100, 120}, {39, 59, 100, 120}},
                           Case{kBackgroundByFirstPixel, {0, 59, 100, 120}, {0, 59, 98, 120}},
                           Case{kPlain, {1, 0, 1, 0}, {0, 10, 0, 10}}}) {
    SpuDescription description = Small();
    description.sequences[0].commands = {ContrastCommand(each.alphas)};
    SubpictureUnit unit = Decoded(description);
    unit.state.horizontalOffset = unit.state.verticalOffset = unit.state.border = 8;
    unit.state.area = {108, 112, 192, 195};
    const Bytes frame = Frame(each.content, 1);
    PutFrame(frame);
    EXPECT_EQ(Import(unit), Result::kDone);
    EXPECT_EQ(unit.state.area, each.area);
    EXPECT_TRUE(Screen(unit) == frame);
    EXPECT_EQ(unit.state.horizontalOffset + unit.state.verticalOffset + unit.state.border, 0);
    EXPECT_EQ(unit.state.statistics.empty, each.area.ex == 10);
  }
}

TEST_F(ExchangeTest, ABitmapMayTakeAllRoomAndNoMore) {
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

TEST_F(ExchangeTest, LaterSequencesThatRepeatThePlaceFollow) {
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

TEST_F(ExchangeTest, UnusedBytesBehindAndBeforeTheBitmapAreClosedUp) {
  SpuDescription description = Subtitle({"01", "23"}, 100, 200, 9);
  const SubpictureUnit plain = Decoded(description);
  description.spareBytes = 7;
  const SubpictureUnit behind = Decoded(description, 100);
  // The codes move up to the control sequences.
  Bytes bytes = behind.state.bytes;
  const auto codes = bytes.begin() + 4;
  std::rotate(codes, bytes.begin() + plain.state.dcsqtOffset,
              codes + (behind.state.dcsqtOffset - 4));
  const auto offsetsAt = static_cast<std::size_t>(*FindCommand(behind, kSetFieldOffsets, 0));
  bytes[offsetsAt + 2] = 11;
  bytes[offsetsAt + 4] = static_cast<std::uint8_t>(plain.state.bottomOffset + 7);
  // Behind it the few that a pack's end may need are tolerated.
  for (const auto& [loose, left] : {std::pair(behind, 5), {Decoded(bytes, 100), 0}}) {
    SubpictureUnit unit = loose;
    ASSERT_EQ(Export(unit), Result::kDone);
    ASSERT_EQ(Import(unit), Result::kDone);
    EXPECT_EQ(unit.state.TotalSize(), plain.state.TotalSize() + left);
    EXPECT_EQ(unit.state.freeRoom, 107 - left);
    EXPECT_EQ(unit.state.topOffset, plain.state.topOffset);
    EXPECT_EQ(PixelRows(unit), description.rows);
  }
}

#ifdef QUILLOMAR_CONVERT

// Files on the disk, read and written by ImageMagick.
class ImageMagickTest : public ExchangeTest {
 protected:
  ImageMagickTest() {
    std::string folder = testing::TempDir() + "bitmapXXXXXX";
    EXPECT_NE(mkdtemp(folder.data()), nullptr);
    folder_ = folder + "/";
  }
  ~ImageMagickTest() override { std::filesystem::remove_all(folder_); }
  void Convert(const std::string& from, const std::string& options, const std::string& to) {
    const std::string command =
        "cd " + folder_ + " && " QUILLOMAR_CONVERT " " + from + " " + options + " " + to;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
  }
  Bytes Content(const std::string& name) {
    return ReadWholeFile(*disk_, folder_ + name, 1U << 24U).value_or(Bytes());
  }

  std::unique_ptr<FileSystem> disk_ = MakeDiskFileSystem();
  std::string folder_;
};

TEST_F(ImageMagickTest, ReadsOurFilesAndWritesFilesThatWeRead) {
  SubpictureUnit unit = Decoded(Subtitle(RandomRows(4, 300, 41, 9), 33, 400, 9));
  const Bytes screen = Screen(unit);
  const std::string header = "P6\n720 576\n255\n";
  Bytes expected(header.begin(), header.end());
  for (const std::uint8_t type : screen) {
    const Rgb colour = kColours.at(type);
    expected.insert(expected.end(), {colour.r, colour.g, colour.b});
  }
  for (const BmpDepth depth : {BmpDepth::k24Bit, BmpDepth::k4Bit}) {
    const std::string path = folder_ + "ours.bmp";
    ASSERT_EQ(ExportBmp(unit, path, depth, kColours, *disk_, context_), Result::kDone);
    Convert("ours.bmp", "-depth 8", "ours.ppm");
    EXPECT_TRUE(Content("ours.ppm") == expected);
  }
  Convert("ours.ppm", "-type truecolor", "BMP3:wide.bmp");
  Convert("ours.ppm", "-colors 16 -type palette", "BMP3:narrow.bmp");
  EXPECT_EQ(Content("wide.bmp").at(kBmpBitsOffset), 24);
  EXPECT_EQ(Content("narrow.bmp").at(kBmpBitsOffset), 4);
  for (const char* name : {"wide.bmp", "narrow.bmp"}) {
    ASSERT_EQ(ImportBmp(unit, folder_ + name, kColours, *disk_, context_), Result::kDone) << name;
    EXPECT_TRUE(Screen(unit) == screen) << name;
  }
  Convert("ours.ppm", "", "BMP:newer.bmp");
  EXPECT_EQ(ImportBmp(unit, folder_ + "newer.bmp", kColours, *disk_, context_), Result::kFailed);
  ASSERT_EQ(messages_.errors.size(), 1U);
  EXPECT_EQ(messages_.errors[0].find("Error: The bitmap must be standard Windows V.3"), 0U);
}

#endif

}  // namespace
}  // namespace quillomar
