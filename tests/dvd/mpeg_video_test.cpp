#include "dvd/mpeg_video.h"

#include <gtest/gtest.h>

#include "support/pack_builder.h"

namespace quillomar {
namespace {

using test::MakeVideoPack;
using test::PictureHeader;
using test::SequenceExtension;
using test::SequenceHeader;

// A payload of which only `count` bytes fit before the sector's end.
Sector PackEndingAfter(const Bytes& piece, std::size_t count) {
  const std::size_t room = kSectorSize - 28;
  return MakeVideoPack(0, {Bytes(room - count, 0xFF), piece});
}

TEST(MpegVideo, ReadsTheSequenceHeader) {
  const auto header =
      FindSequenceHeader(MakeVideoPack(0, {{0, 0, 0}, SequenceHeader(704, 480, 3)}));
  ASSERT_TRUE(header);
  EXPECT_EQ(header->width, 704);
  EXPECT_EQ(header->height, 480);
  EXPECT_EQ(header->aspect, 3);
  EXPECT_NEAR(FrameRateOf(header->rate), 29.97, 0.001);
  EXPECT_FALSE(FindSequenceHeader(MakeVideoPack(0, {PictureHeader(1)})));
}

TEST(MpegVideo, LeavesASequenceHeaderThatIsCutOff) {
  EXPECT_TRUE(FindSequenceHeader(PackEndingAfter(SequenceHeader(720, 480, 2), 8)));
  for (std::size_t count = 0; count < 8; ++count) {
    EXPECT_FALSE(FindSequenceHeader(PackEndingAfter(SequenceHeader(720, 480, 2), count))) << count;
  }
}

TEST(MpegVideo, TellsTheStandardByTheHeight) {
  EXPECT_EQ(StandardOf({720, 480, 2}), VideoStandard::kNtsc);
  EXPECT_EQ(StandardOf({352, 240, 2}), VideoStandard::kNtsc);
  EXPECT_EQ(StandardOf({720, 576, 2}), VideoStandard::kPal);
  EXPECT_EQ(StandardOf({352, 288, 2}), VideoStandard::kPal);
}

TEST(MpegVideo, OnlyAnIPictureTellsTheVersion) {
  const Bytes extension = SequenceExtension();
  EXPECT_EQ(FindMpeg2(MakeVideoPack(0, {extension, PictureHeader(1)})), true);
  EXPECT_EQ(FindMpeg2(MakeVideoPack(0, {PictureHeader(1), extension})), true);
  EXPECT_EQ(FindMpeg2(MakeVideoPack(0, {PictureHeader(1)})), false);
  EXPECT_EQ(FindMpeg2(MakeVideoPack(0, {extension, PictureHeader(2)})), std::nullopt);
  EXPECT_EQ(FindMpeg2(MakeVideoPack(0, {extension})), std::nullopt);
}

TEST(MpegVideo, FindsCaptionsBehindOtherUserData) {
  const Bytes other{0, 0, 1, 0xB2, 'D', 'T', 'G', '1'};
  EXPECT_TRUE(HasClosedCaptions(MakeVideoPack(0, {other, test::ClosedCaptions()})));
  EXPECT_FALSE(HasClosedCaptions(MakeVideoPack(0, {other, other})));
  EXPECT_TRUE(HasClosedCaptions(PackEndingAfter(test::ClosedCaptions(), 8)));
  EXPECT_FALSE(HasClosedCaptions(PackEndingAfter(test::ClosedCaptions(), 7)));
}

}  // namespace
}  // namespace quillomar
