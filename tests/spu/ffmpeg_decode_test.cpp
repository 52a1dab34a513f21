// Our reading of a unit against that of FFmpeg's subtitle decoder.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "author/spu_builder.h"
#include "ffmpeg_subtitle.h"
#include "spu/colour_edit.h"
#include "spu/duration.h"
#include "spu/fade.h"
#include "spu/parse.h"
#include "spu/run_length.h"
#include "spu/visibility.h"
#include "support/message_collector.h"

namespace quillomar {
namespace {

using namespace author;
using namespace test;

// FFmpeg cuts away what is transparent; inside its rectangle types, colours and alphas are ours,
// outside all of ours is transparent.
void ExpectSamePicture(const SubpictureUnit& unit, const AVSubtitleRect* rect) {
  const SpuState& state = unit.state;
  int differences = 0;
  std::size_t at = 0;
  for (int row = 0; row < state.height; ++row) {
    for (int column = 0; column < state.width; ++column) {
      const std::uint8_t type = unit.pixels[at++];
      const int x = rect == nullptr ? -1 : state.area.sx + column - rect->x;
      const int y = rect == nullptr ? -1 : state.area.sy + row - rect->y;
      if (x < 0 || y < 0 || x >= rect->w || y >= rect->h) {
        differences += (*unit.currentAlphas)[type] != 0 ? 1 : 0;
      } else {
        differences += rect->data[0][y * rect->linesize[0] + x] != type ? 1 : 0;
      }
    }
  }
  EXPECT_EQ(differences, 0);
  for (std::size_t type = 0; rect != nullptr && type < kPixelTypes; ++type) {
    const auto* colours = reinterpret_cast<const std::uint32_t*>(rect->data[1]);
    const std::uint32_t alpha = (*unit.currentAlphas)[type] * 17U;
    EXPECT_EQ(colours[type], alpha << 24U | PaletteEntry((*unit.currentColours)[type]));
  }
}

// FFmpeg truncates to whole ms, ours are rounded up to whole frames.
void ExpectSameTime(int ours, int theirs, VideoStandard standard) {
  const double frame = FrameMs(standard);
  EXPECT_GT(ours, theirs - 1);
  EXPECT_LT(ours, theirs + frame + 1);
  EXPECT_LT(std::fabs(ours - std::round(ours / frame) * frame), 1);
}

TEST(FfmpegDecode, AgreesOnPixelsPlaceColoursAndTimes) {
  MessageCollector messages;
  ReportLimit limit(messages.reporter);
  std::mt19937 random(20);
  const auto upTo = [&random](int most) {
    return static_cast<int>(random() % (static_cast<unsigned>(most) + 1));
  };
  int seen = 0;
  for (unsigned seed = 0; seed < 300; ++seed) {
    const auto standard = seed % 2 == 0 ? VideoStandard::kPal : VideoStandard::kNtsc;
    const SpuContext context{messages.reporter, limit, standard};
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

    const FfmpegSubtitle theirs(unit.state.bytes);
    SCOPED_TRACE(seed);
    ExpectSamePicture(unit, theirs.Rect());
    if (!theirs.Decoded()) continue;
    ++seen;
    // FFmpeg takes no time from a forced start.
    if (!IsForced(unit)) ExpectSameTime(DelayMs(unit, 0, standard), theirs.StartMs(), standard);
    ExpectSameTime(DurationMs(unit, standard), theirs.EndMs(), standard);
    // And what we code ourselves reads the same there.
    static_cast<void>(ReencodeBitmap(unit, {upTo(3), upTo(3)}, context));
    const FfmpegSubtitle again(unit.state.bytes);
    ExpectSamePicture(unit, again.Rect());
  }
  EXPECT_GT(seen, 200);
}

TEST(FfmpegDecode, FindsTheDurationsStartsAndAlphasThatWereSet) {
  MessageCollector messages;
  ReportLimit limit(messages.reporter);
  for (const auto standard : {VideoStandard::kPal, VideoStandard::kNtsc}) {
    const SpuContext context{messages.reporter, limit, standard};
    SpuDescription description = Subtitle(RandomRows(3, 60, 20, 9), 80, 400, 0);
    description.sequences.pop_back();
    SubpictureUnit unit = MakeUnit(BuildSpu(description));
    unit.state.freeRoom = 300;
    ASSERT_EQ(ParseControlSequences(unit, 0, 0, context), Result::kDone);
    ASSERT_EQ(DecodeBitmap(unit, context), Result::kDone);
    ASSERT_EQ(AddStopCommand(unit, context), Result::kDone);
    for (const int frames : {1, 2, 25, 1000, 1024, 5000}) {
      const int ms = static_cast<int>(frames * FrameMs(standard));
      ASSERT_EQ(SetDelay(unit, -1, ms, context), Result::kDone);
      ExpectSameTime(ms, FfmpegSubtitle(unit.state.bytes).EndMs(), standard);
    }
    SelectControlSequence(unit, 0);
    ExpectSamePicture(unit, FfmpegSubtitle(unit.state.bytes).Rect());
    const Bytes plain = unit.state.bytes;
    ASSERT_EQ(AddFadeIn(unit, false, context), Result::kDone);
    // FFmpeg paints with the alphas of the sequence that names the bitmap, here transparent ones,
    // so all that it sees of a fade is its end.
    ExpectSameTime(DurationMs(unit, standard), FfmpegSubtitle(unit.state.bytes).EndMs(), standard);
    ASSERT_EQ(RemoveFadeIn(unit, context), Result::kDone);
    EXPECT_EQ(unit.state.bytes, plain);

    ASSERT_EQ(SetForcedStart(unit, true), Result::kDone);
    const FfmpegSubtitle forced(unit.state.bytes);
    ASSERT_NE(forced.Rect(), nullptr);
    EXPECT_NE(forced.Rect()->flags & AV_SUBTITLE_FLAG_FORCED, 0);
    ASSERT_EQ(SetForcedStart(unit, false), Result::kDone);
    ExpectSamePicture(unit, FfmpegSubtitle(unit.state.bytes).Rect());
    ASSERT_EQ(HideUnit(unit), Result::kDone);
    EXPECT_EQ(FfmpegSubtitle(unit.state.bytes).Rect(), nullptr);
  }
}

}  // namespace
}  // namespace quillomar
