// The frame that the command line writes, with and without its subpicture.

#include <gtest/gtest.h>

#include "bitmap/bmp.h"
#include "disc/open_disc.h"

namespace quillomar {
namespace {

TEST(FrameCommand, ComposedDiffersWithinTheSubpictureOnly) {
  if (!test::DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
  const test::DiscCopy disc("pal");
  const auto write = [&](const std::string& name, std::vector<std::string> words) {
    words.insert(words.end(), {"--numbers", "3", "--out", disc.Path(name)});
    EXPECT_EQ(test::Cli(words, disc.TitleVobs()).exitCode, 0);
    return test::FileBytes(disc.Path(name));
  };
  const Bytes plain = write("plain.bmp", {"frame"});
  const Bytes composed = write("composed.bmp", {"frame", "--composed"});
  BmpView before;
  BmpView after;
  ASSERT_EQ(before.Open(plain, 720, 576), nullptr);
  ASSERT_EQ(after.Open(composed, 720, 576), nullptr);

  test::OpenEditor editor(disc.TitleVobs());
  const DisplayArea area = editor->Doc().Units().at(2)->state.area;
  int changed = 0;
  for (int row = 0; row < 576; ++row) {
    for (int column = 0; column < 720; ++column) {
      if (before.Colour(row, column) == after.Colour(row, column)) continue;
      ++changed;
      EXPECT_TRUE(column >= area.sx && column <= area.ex && row >= area.sy && row <= area.ey);
    }
  }
  EXPECT_GT(changed, 1000);
}

}  // namespace
}  // namespace quillomar
