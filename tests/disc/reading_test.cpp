// What the program reads of an authored disc is what FFmpeg reads of it.

#include <gtest/gtest.h>

#include <cmath>

#include "disc/ffmpeg_subtitles.h"
#include "disc/open_disc.h"
#include "spu/parse.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

using test::DiscCopy;
using test::FfmpegSubtitle;
using test::OpenEditor;

struct DiscCase {
  const char* disc;
  bool menu;
};

class AuthoredDisc : public testing::TestWithParam<DiscCase> {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
  }
};

void ExpectSameDuration(const SubpictureUnit& unit, const FfmpegSubtitle& other,
                        VideoStandard standard) {
  const int duration = DurationMs(unit, standard);
  ASSERT_EQ(duration >= 0, other.hasEnd);
  if (duration < 0) return;
  // The next whole number of frames; FFmpeg has truncated its end to a millisecond.
  EXPECT_GE(duration + 1, other.endMs);
  EXPECT_LT(duration, other.endMs + 1 + FrameMs(standard));
}

TEST_P(AuthoredDisc, EverySubpictureIsAsFfmpegReadsIt) {
  const DiscCopy disc(GetParam().disc);
  const auto vobs = GetParam().menu ? disc.MenuVobs() : disc.TitleVobs();
  const auto expected = test::ReadWithFfmpeg(vobs);
  OpenEditor editor(vobs);
  const UnitList units = editor->Doc().Units();
  ASSERT_GT(units.size(), 0U);
  ASSERT_EQ(units.size(), expected.size());
  EXPECT_EQ(editor.errors, std::vector<std::string>{});
  const SpuContext context = editor->Doc().Context();

  // Both list units as they end in the multiplex, each stream in its own order.
  for (int stream = 0; stream < kSubpictureStreams; ++stream) {
    std::size_t next = 0;
    for (const FfmpegSubtitle& other : expected) {
      if (other.streamId != kFirstSubpictureId + stream) continue;
      while (next < units.size() && units[next]->stream != stream) ++next;
      ASSERT_LT(next, units.size());
      SubpictureUnit& unit = Document::Unrecorded(units[next++]);
      SCOPED_TRACE("subpicture " + std::to_string(unit.number));
      EXPECT_EQ(unit.state.pts, other.pts);
      EXPECT_EQ(other.startMs, 0);
      EXPECT_EQ(IsForced(unit), other.forced);
      ExpectSameDuration(unit, other, context.standard);
      ASSERT_EQ(NeedBitmap(unit, context), Result::kDone);
      const int lines = FrameHeight(context.standard);
      EXPECT_TRUE(test::ScreenOf(unit, lines) == test::ScreenOf(other, lines));
      for (std::size_t type = 0; type < kPixelTypes; ++type) {
        EXPECT_EQ((*unit.currentColours)[type], other.colours[type]);
        EXPECT_EQ((*unit.currentAlphas)[type], other.alphas[type]);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Discs, AuthoredDisc,
                         testing::Values(DiscCase{"ntsc", false}, DiscCase{"pal", false},
                                         DiscCase{"split", false}, DiscCase{"menu", true}),
                         [](const auto& instance) {
                           return std::string(instance.param.disc) +
                                  (instance.param.menu ? "Menu" : "Titles");
                         });

TEST(SplitDisc, ReadsAsTheWholeOneDoes) {
  if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
  const DiscCopy whole("ntsc");
  const DiscCopy split("split");
  const auto strip = [](std::string text, const std::string& folder) {
    for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder)) {
      text.erase(at, folder.size());
    }
    return text;
  };
  for (const char* const command : {"list", "info"}) {
    const auto one = test::Cli({command, "--json"}, {whole.Folder()});
    const auto three = test::Cli({command, "--json"}, {split.Folder()});
    EXPECT_EQ(one.exitCode, 0);
    EXPECT_GT(one.out.size(), 1000U);
    EXPECT_EQ(strip(one.out, whole.Folder()), strip(three.out, split.Folder()));
  }
}

}  // namespace
}  // namespace quillomar
