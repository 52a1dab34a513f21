// Subpictures that leave the disc as bitmaps or .sup files and come back.

#include "disc/disc_test.h"

namespace quillomar {
namespace {

using test::Cli;
using test::FfmpegSubtitle;
using test::FileBytes;
using test::OpenEditor;

class ExchangedDisc : public test::DiscTest {};

// FFmpeg cuts transparent edges off all but forced units; those must agree where both have pixels.
void ExpectSamePicture(const FfmpegSubtitle& now, const FfmpegSubtitle& before) {
  EXPECT_EQ(now.pts, before.pts);
  EXPECT_EQ(now.endMs, before.endMs);
  EXPECT_EQ(now.forced, before.forced);
  EXPECT_EQ(now.colours, before.colours);
  EXPECT_EQ(now.alphas, before.alphas);
  if (now.forced) return;
  EXPECT_EQ(now.x, before.x);
  EXPECT_EQ(now.y, before.y);
  EXPECT_EQ(now.types, before.types);
}

TEST_P(ExchangedDisc, BitmapsComeBackAsTheyWent) {
  const auto before = test::ReadWithFfmpeg(vobs);
  const std::string file = disc->Path("subpicture.bmp");
  for (int number = 1; number <= static_cast<int>(before.size()); ++number) {
    const std::string bits = number % 2 == 0 ? "4" : "24";
    const std::vector<std::string> one = {"--numbers", std::to_string(number)};
    ASSERT_EQ(Cli({"export-bmp", one[0], one[1], "--bits", bits, "--out", file}, vobs).exitCode, 0);
    std::vector<std::string> files = {file};
    files.insert(files.end(), vobs.begin(), vobs.end());
    const auto import = Cli({"import-bmp", "--yes", one[0], one[1]}, files);
    ASSERT_EQ(import.exitCode, 0) << import.err;
  }
  const auto after = test::ReadWithFfmpeg(vobs);
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t i = 0; i < after.size(); ++i) ExpectSamePicture(after[i], before[i]);
}

TEST_P(ExchangedDisc, SupFilesHoldTheUnitsAndAreWrittenTheSameAgain) {
  const std::string first = disc->Path("first.sup");
  const std::string second = disc->Path("second.sup");
  ASSERT_EQ(Cli({"export-sup", "--stream", "0x21", "--out", first}, vobs).exitCode, 0);
  ASSERT_EQ(Cli({"export-sup", "--out", second}, {first}).exitCode, 0);
  EXPECT_EQ(FileBytes(first), FileBytes(second));

  OpenEditor fromDisc(vobs);
  OpenEditor fromSup({first});
  const UnitList units = fromSup->Doc().Units();
  std::size_t next = 0;
  for (const UnitPointer& unit : fromDisc->Doc().Units()) {
    if (unit->stream != 1) continue;
    ASSERT_LT(next, units.size());
    EXPECT_EQ(units[next]->state.pts, unit->state.pts);
    EXPECT_EQ(units[next]->state.bytes, unit->state.bytes);
    ++next;
  }
  EXPECT_EQ(next, units.size());
  EXPECT_GT(next, 10U);

  // An edit saved into the file is there when it is opened again; two editors do not share it.
  const int before = units.front()->state.area.sy;
  EXPECT_EQ(Cli({"set", "--yes", "--move-y", "4"}, {first}).exitCode, 1);
  fromSup->CloseFiles();
  ASSERT_EQ(Cli({"set", "--yes", "--move-y", "4", "--duration", "3000"}, {first}).exitCode, 0);
  OpenEditor edited({first});
  EXPECT_EQ(edited->Doc().Units().front()->state.area.sy, before - 4);
}

INSTANTIATE_TEST_SUITE_P(Discs, ExchangedDisc, testing::Values("ntsc", "pal"), test::DiscName);

}  // namespace
}  // namespace quillomar
