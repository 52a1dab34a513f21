#include <cmath>

#include "exchange_fixture.h"

namespace quillomar {
namespace {

using namespace test;

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
  constexpr std::size_t kRow = std::size_t{3} * 720;
  ASSERT_EQ(wide.size(), 54 + kRow * 576);
  EXPECT_TRUE(std::equal(header.begin(), header.end(), wide.begin()));
  // The third row of the bitmap is the second from the bottom: types 0 3 2 as blue, green, red.
  const Bytes pixels = {30, 20, 10, 200, 99, 9, 0, 0, 0};
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), wide.begin() + 54 + kRow));

  ASSERT_EQ(Export(unit, BmpDepth::k4Bit), Result::kDone);
  const Bytes narrow = files_.Content(kBmpPath);
  ASSERT_EQ(narrow.size(), 118U + std::size_t{360} * 576);
  EXPECT_EQ(narrow[10], 118);
  EXPECT_EQ(narrow[46], narrow[50]);
  EXPECT_EQ(Bytes(narrow.begin() + 54, narrow.begin() + 60), (Bytes{30, 20, 10, 0, 1, 240}));
  EXPECT_EQ(Bytes(narrow.begin() + 118 + 360, narrow.begin() + 118 + 363),
            (Bytes{0x03, 0x21, 0x00}));
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
  EXPECT_EQ(types({1, 1}), "P6\n5 3\n255\n012301230123012");
  EXPECT_EQ(types({2, 1}), "P6\n2 3\n255\n021320");         // columns 0 and 2
  EXPECT_EQ(types({1.5, 1.5}), "P6\n3 2\n255\n023201");     // columns 0, 2, 3; rows 0, 2
  EXPECT_EQ(types({5, 0.5}), "P6\n1 5\n255\n01122");        // rows 0, 1, 1, 2, 2
  EXPECT_EQ(types({0.5, 3}), "P6\n10 1\n255\n0112233000");  // the last column stays inside
  for (const double scale : {0.0, -1.0, 6.0, 1e-9, 1e300, std::nan(""), HUGE_VAL}) {
    EXPECT_EQ(ExportPpm(unit, "/x", {scale, 1}, kColours, files_, context_), Result::kFailed);
  }
  EXPECT_EQ(ExportPpm(unit, "/x", {1, 1e-9}, kColours, files_, context_), Result::kFailed);
  EXPECT_FALSE(files_.Exists("/x"));
}

}  // namespace
}  // namespace quillomar
