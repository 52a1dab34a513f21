// Our reading of a unit against that of FFmpeg's subtitle decoder.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "disc/ffmpeg_subtitles.h"
#include "spu/colour_edit.h"
#include "spu/duration.h"
#include "spu/parse.h"
#include "spu/run_length.h"
#include "support/unit_test.h"

namespace quillomar {
namespace {

using namespace test;

void ExpectSamePicture(const SubpictureUnit& unit, const FfmpegSubtitle& theirs,
                       VideoStandard standard) {
  const int lines = FrameHeight(standard);
  EXPECT_TRUE(ScreenOf(unit, lines) == ScreenOf(theirs, lines));
  for (std::size_t type = 0; theirs.width > 0 && type < kPixelTypes; ++type) {
    EXPECT_EQ(theirs.colours[type], (*unit.currentColours)[type]);
    EXPECT_EQ(theirs.alphas[type], (*unit.currentAlphas)[type]);
  }
}

// FFmpeg truncates to whole ms, ours are rounded up to whole frames.
void ExpectSameTime(int ours, int theirs, VideoStandard standard) {
  const double frame = FrameMs(standard);
  EXPECT_GT(ours, theirs - 1);
  EXPECT_LT(ours, theirs + frame + 1);
  EXPECT_LT(std::fabs(ours - std::round(ours / frame) * frame), 1);
}

class FfmpegDecode : public UnitTest {};

TEST_F(FfmpegDecode, AgreesOnPixelsPlaceColoursAndTimes) {
  std::mt19937 random(20);
  const auto upTo = [&random](int most) {
    return static_cast<int>(random() % (static_cast<unsigned>(most) + 1));
  };
  int seen = 0;
  for (unsigned seed = 0; seed < 300; ++seed) {
    const SpuContext& context = seed % 2 == 0 ? context_ : ntsc_;
    const VideoStandard standard = context.standard;
    const int width = 1 + upTo(719);
    const int height = 2 + upTo(60);
    const int x = upTo(kPictureWidth - width);
    const int y = upTo(FrameHeight(standard) - height);
    SpuDescription description =
        Subtitle(RandomRows(seed, width, height, 1 + upTo(400)), x, y, upTo(60000));
    PixelTypeValues colours{};
    PixelTypeValues alphas{};
    for (auto& colour : colours) colour = static_cast<std::uint16_t>(upTo(15));
    for (auto& alpha : alphas) alpha = static_cast<std::uint16_t>(upTo(1) * upTo(15));
    description.sequences[0].delay = upTo(50);
    description.sequences[1].delay += description.sequences[0].delay;
    description.sequences[0].commands = {
        {seed % 3 == 0 ? kForcedStart : kStart}, ColourCommand(colours), ContrastCommand(alphas)};
    SubpictureUnit unit = MakeUnit(BuildSpu(description));
    ASSERT_EQ(ParseControlSequences(unit, 0, 0, context), Result::kDone);
    ASSERT_EQ(DecodeBitmap(unit, context), Result::kDone);
    SelectControlSequence(unit, 0);

    const FfmpegSubtitle theirs = DecodeWithFfmpeg(unit.state.bytes);
    SCOPED_TRACE(seed);
    ExpectSamePicture(unit, theirs, standard);
    if (theirs.width == 0) continue;
    ++seen;
    // FFmpeg takes no time from a forced start.
    if (!IsForced(unit)) ExpectSameTime(DelayMs(unit, 0, standard), theirs.startMs, standard);
    ExpectSameTime(DurationMs(unit, standard), theirs.endMs, standard);
    // And what we code ourselves reads the same there.
    static_cast<void>(ReencodeBitmap(unit, {upTo(3), upTo(3)}, context));
    ExpectSamePicture(unit, DecodeWithFfmpeg(unit.state.bytes), standard);
  }
  EXPECT_GT(seen, 200);
}

}  // namespace
}  // namespace quillomar
