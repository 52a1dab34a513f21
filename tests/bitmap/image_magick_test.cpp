#ifdef QUILLOMAR_CONVERT

#include <cstdlib>
#include <filesystem>

#include "base/platform.h"
#include "exchange_fixture.h"

namespace quillomar {
namespace {

using namespace test;

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

}  // namespace
}  // namespace quillomar

#endif
