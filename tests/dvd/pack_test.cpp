// Packs and what they carry: navigation, video headers, subpicture data.
#include "dvd/pack.h"

#include <gtest/gtest.h>

#include <array>

#include "author/pack_builder.h"
#include "dvd/big_endian.h"
#include "dvd/mpeg_video.h"
#include "dvd/nav_pack.h"

namespace quillomar {
namespace {

using namespace author;

TEST(BigEndian, FieldsAreReadAndWrittenInsideTheBytesOnly) {
  std::array<std::uint8_t, 6> bytes = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC};
  EXPECT_EQ(GetInt(bytes, 0), 0x12345678U);
  EXPECT_EQ(GetShort(bytes, 4), 0x9ABC);
  EXPECT_EQ(GetByte(bytes, 5), 0xBC);
  PutInt(bytes, 1, 5);
  AddInt(bytes, 1, 0xFFFFFFFF);
  PutShort(bytes, 4, 0x0102);
  const auto written = bytes;
  EXPECT_EQ(written, (std::array<std::uint8_t, 6>{0x12, 0, 0, 0, 1, 2}));
  EXPECT_EQ(SwapInt(0x12345678), 0x78563412U);
  EXPECT_EQ(SwapShort(0x1234), 0x3412);
  EXPECT_EQ(GetByte(bytes, 6) + GetInt({}, 0) + GetInt(bytes, SIZE_MAX), 0U);
  PutInt(bytes, 3, 0xFFFFFFFF);
  PutShort(bytes, 5, 0xFFFF);
  PutShort(bytes, SIZE_MAX, 0xFFFF);
  EXPECT_EQ(bytes, written);
}

TEST(ClassifyPack, TellsEveryKindAndTheSubStreamOfSubpictures) {
  EXPECT_EQ(ClassifyPack(Sector{}).kind, PackKind::kEmpty);
  EXPECT_EQ(ClassifyPack(MakePaddingPack(0)).kind, PackKind::kPadding);
  EXPECT_EQ(ClassifyPack(MakeVideoPack(0, {})).kind, PackKind::kVideo);
  EXPECT_EQ(ClassifyPack(MakeNavPack({})).kind, PackKind::kNav);
  for (const std::size_t packet : {kDsiPacketOffset, kPciPacketOffset}) {
    Sector half = MakeNavPack({});
    half[packet + 3] = 0xBE;
    EXPECT_EQ(ClassifyPack(half).kind, PackKind::kOther);
  }
  Sector longHeader = MakePrivatePack(0, 0x80);
  longHeader[kPesHeaderLengthOffset] = 255;
  longHeader[kPesHeaderDataOffset + 255] = 0x3F;
  EXPECT_EQ(ClassifyPack(longHeader).kind, PackKind::kSubpicture);
  // Each range of sub-streams begins here and goes on to the next.
  const std::vector<std::pair<int, PackKind>> ranges = {
      {0x00, PackKind::kOther}, {0x20, PackKind::kSubpicture}, {0x40, PackKind::kOther},
      {0x80, PackKind::kAudio}, {0x88, PackKind::kOther},      {0xA0, PackKind::kAudio},
      {0xA8, PackKind::kOther}, {0x100, PackKind::kOther}};
  for (std::size_t range = 0; range + 1 < ranges.size(); ++range) {
    for (int id = ranges[range].first; id < ranges[range + 1].first; ++id) {
      const PackInfo info = ClassifyPack(MakePrivatePack(0, static_cast<std::uint8_t>(id)));
      EXPECT_EQ(info.kind, ranges[range].second) << id;
      if (info.kind == PackKind::kSubpicture) {
        EXPECT_EQ(info.subStreamId, id);
      }
    }
  }
}

TEST(ClockReference, SurvivesWritingAndReadingAndTouchesNothingElse) {
  for (const std::uint64_t base : {0x0ULL, 0x1ULL, 0x7FFFULL, 0x8000ULL, 0x3FFFFFFFULL,
                                   0x40000000ULL, 0x123456789ULL, 0x1FFFFFFFFULL}) {
    Sector sector{};
    PutClockReference(sector, {base, 299});
    EXPECT_EQ(GetClockReference(sector).base, base);
    EXPECT_EQ(GetClockReference(sector).extension, 299);
  }
  Sector sector;
  sector.fill(0xEE);
  PutClockReference(sector, {0, 0});
  EXPECT_EQ(Bytes(sector.begin() + 3, sector.begin() + 11),
            (Bytes{0xEE, 0x44, 0x00, 0x04, 0x00, 0x04, 0x01, 0xEE}));
}

TEST(TimeStamp, SurvivesWritingAndReadingAndKeepsBit32) {
  for (const std::uint32_t ticks : {0U, 1U, 0x7FFFU, 0x8000U, 0x40000000U, 0xFFFFFFFFU}) {
    Bytes field(kTimeStampSize);
    PutTimeStamp(field, ticks);
    EXPECT_EQ(GetTimeStamp(field), ticks);
    EXPECT_EQ(field[0] & 0xF1, 0x21);
    field[0] |= 0x08;
    PutTimeStamp(field, ~ticks);
    EXPECT_EQ(GetTimeStamp(field), 0x100000000ULL | ~ticks);
  }
  EXPECT_EQ(GetTimeStamp(Bytes{0x21, 0, 1, 0}), 0U);
}

TEST(PesPayload, EndsWhereThePacketOrTheSectorEnds) {
  constexpr std::size_t kRoom = kSectorSize - kPesHeaderDataOffset - kTimeStampSize;
  Sector sector = MakePrivatePack(0, 0x20);
  EXPECT_EQ(PesPayload(sector).front(), 0x20);
  for (const auto& [length, size] :
       {std::pair<int, std::size_t>(3 + 5 + 10, 10), {0xFFFF, kRoom}, {3, 0}}) {
    PutShort(sector, kPesLengthOffset, static_cast<std::uint16_t>(length));
    EXPECT_EQ(PesPayload(sector).size(), size) << length;
  }
}

Button WideButton() {
  return {.colourNumber = 3,
          .autoAction = true,
          .x = 719,
          .y = 1000,
          .width = 304,
          .height = 23,
          .up = 36,
          .down = 1,
          .left = 63,
          .right = 2};
}

TEST(NavPack, ReadsTimesPlaceAndANewHighlight) {
  const NavPack nav = ParseNavPack(MakeNavPack({.startTime = 0x89ABCDEF,
                                                .endTime = 0xFEDCBA98,
                                                .vcid = {0x1234, 0x56},
                                                .category = 0x4000,
                                                .buttonCount = 2}));
  EXPECT_EQ(nav.startTime, 0x89ABCDEFU);
  EXPECT_EQ(nav.endTime, 0xFEDCBA98U);
  EXPECT_EQ(nav.vcid, (Vcid{0x1234, 0x56}));
  EXPECT_TRUE(nav.interleaved);
  EXPECT_EQ(nav.buttonCount, 2);
  EXPECT_FALSE(nav.highlight);

  Highlight highlight;
  highlight.colours[0] = {0, 1, 2, 3, 15, 14, 13, 12, 4, 5, 6, 7, 8, 9, 10, 11};
  highlight.colours[2].fill(9);
  highlight.buttons.assign(kMaxButtons, {.colourNumber = 1, .x = 1, .y = 2, .width = 3});
  highlight.buttons.back() = WideButton();
  Sector sector = MakeNavPack({.highlight = highlight});
  EXPECT_FALSE(ParseNavPack(sector).interleaved);
  EXPECT_EQ(ParseNavPack(sector).highlight, highlight);
  // More buttons than there are, and an end before its start, as no author writes them.
  sector[kNavButtonCountOffset] = 255;
  PutShort(sector, kNavButtonsOffset + 1, 0);
  EXPECT_EQ(ParseNavPack(sector).buttonCount, kMaxButtons);
  EXPECT_EQ(ParseNavPack(sector).highlight->buttons.size(), 36U);
  EXPECT_EQ(ParseNavPack(sector).highlight->buttons[0].width, 0);
  for (const int status : {0, 2, 3, 0x101}) {
    PutShort(sector, kNavHighlightStatusOffset, static_cast<std::uint16_t>(status));
    EXPECT_FALSE(ParseNavPack(sector).highlight) << status;
  }
}

// A payload of which only `count` bytes fit before the sector's end.
Sector PackEndingAfter(const Bytes& piece, std::size_t count) {
  const std::size_t room = kSectorSize - 28;
  return MakeVideoPack(0, {Bytes(room - count, 0xFF), piece});
}

TEST(MpegVideo, ReadsASequenceHeaderThatIsNotCutOff) {
  EXPECT_FALSE(FindSequenceHeader(MakeVideoPack(0, {PictureHeader(1)})));
  struct Case {
    int width, height;
    VideoStandard standard;
  };
  for (const Case& each :
       {Case{704, 480, VideoStandard::kNtsc}, Case{352, 240, VideoStandard::kNtsc},
        Case{720, 576, VideoStandard::kPal}, Case{352, 288, VideoStandard::kPal}}) {
    const Bytes bytes = author::SequenceHeader(each.width, each.height, 3);
    for (std::size_t count = 0; count <= 8; ++count) {
      const auto header = FindSequenceHeader(PackEndingAfter(bytes, count));
      ASSERT_EQ(header.has_value(), count == 8) << count;
      if (!header) continue;
      EXPECT_EQ(header->width, each.width);
      EXPECT_EQ(header->height, each.height);
      EXPECT_EQ(header->aspect, 3);
      EXPECT_NEAR(FrameRateOf(header->rate), 29.97, 0.001);
      EXPECT_EQ(StandardOf(*header), each.standard);
    }
  }
}

TEST(MpegVideo, OnlyAnIPictureTellsTheVersion) {
  EXPECT_EQ(FindMpeg2(MakeVideoPack(0, {PictureHeader(1), SequenceExtension()})), true);
  EXPECT_EQ(FindMpeg2(MakeVideoPack(0, {SequenceExtension(), PictureHeader(2)})), std::nullopt);
}

TEST(MpegVideo, FindsCaptionsBehindOtherUserData) {
  const Bytes other{0, 0, 1, 0xB2, 'D', 'T', 'G', '1'};
  EXPECT_TRUE(HasClosedCaptions(MakeVideoPack(0, {other, ClosedCaptions()})));
  EXPECT_FALSE(HasClosedCaptions(MakeVideoPack(0, {other, other})));
  EXPECT_TRUE(HasClosedCaptions(PackEndingAfter(ClosedCaptions(), 8)));
  EXPECT_FALSE(HasClosedCaptions(PackEndingAfter(ClosedCaptions(), 7)));
}

}  // namespace
}  // namespace quillomar
