#include "spu/write_back.h"

#include <random>

#include "dvd/big_endian.h"
#include "pack_disc.h"
#include "spu/spu_pack.h"
#include "support/unit_test.h"

namespace quillomar {
namespace {

using namespace test;

// Gives the unit other bytes, as an edit does.
void Replace(SubpictureUnit& unit, const Bytes& bytes, PackDisc& disc) {
  unit.state.bytes = bytes;
  unit.state.decoded = false;
  unit.state.modified = true;
  ASSERT_EQ(ParseControlSequences(unit, 0, 0, disc.Context()), Result::kDone);
}

bool IsFilled(ByteSpan bytes, std::uint8_t value) {
  return std::all_of(bytes.begin(), bytes.end(), [&](auto byte) { return byte == value; });
}

// The padding stream that must reach from `begin` to the pack's end.
void ExpectPadding(const Sector& pack, std::size_t begin) {
  EXPECT_EQ(GetInt(pack, begin), kPaddingStream);
  EXPECT_EQ(GetShort(pack, begin + 4), kSectorSize - begin - 6);
  EXPECT_TRUE(IsFilled(ByteSpan(pack).subspan(begin + 6), 0xFF));
}

void ExpectData(const Sector& pack, int header, ByteSpan data) {
  EXPECT_EQ(GetInt(pack, kPesStartOffset), kPrivateStream1);
  ASSERT_EQ(HeaderDataLength(pack), header);
  EXPECT_EQ(pack[23U + static_cast<std::size_t>(header)], 0x20);
  const ByteSpan carried = SpuBytes(pack);
  ASSERT_GE(carried.size(), data.size());
  EXPECT_TRUE(std::equal(data.begin(), data.end(), carried.begin()));
}

// The disc holds what the unit showed: pixels, sequences, time.
void ExpectSameSubtitle(PackDisc& disc, const SubpictureUnit& expected) {
  const SubpictureUnit found = disc.GatherOne();
  EXPECT_EQ(ContentOf(found.state.bytes, disc.Context()),
            ContentOf(expected.state.bytes, disc.Context()));
  EXPECT_EQ(found.state.pts, expected.state.pts);
}

TEST(WriteBack, ClosesTheEndOfThePackInItsFourWays) {
  const std::size_t room = 2024 - 5;
  struct Case {
    std::size_t first, edited, written;
  };
  // A gap of 1 to 5 bytes in the last pack is closed by spare bytes; 0 and 6 need none.
  for (const Case& each :
       {Case{300, 400, 400}, Case{400, room, room}, Case{400, room - 6, room - 6},
        Case{400, room - 1, room}, Case{400, room - 5, room}}) {
    PackDisc disc(MakeSubpicturePacks(UnitOfSize(each.first), {}));
    SubpictureUnit unit = disc.GatherOne();
    Replace(unit, UnitOfSize(each.edited), disc);
    ASSERT_EQ(disc.Write(unit), Result::kDone);
    const Sector pack = disc.ReadPack(0);
    const SubpictureUnit found = disc.GatherOne();
    EXPECT_EQ(found.state.bytes.size(), each.written);
    ExpectData(pack, 5, found.state.bytes);
    EXPECT_EQ(GetShort(pack, kPesLengthOffset), 5 + 4 + each.written);
    if (each.written < room) ExpectPadding(pack, 24 + 5 + each.written);
    ExpectSameSubtitle(disc, unit);
    // Its end stays closed when it is edited and saved again.
    const Bytes saved = disc.Image();
    ASSERT_EQ(disc.Load(unit), Result::kDone);
    ASSERT_EQ(SetColour(unit, 9, kPattern), Result::kDone);
    ASSERT_EQ(disc.Write(unit), Result::kDone);
    ASSERT_EQ(SetColour(unit, 1, kPattern), Result::kDone);
    ASSERT_EQ(disc.Write(unit), Result::kDone);
    EXPECT_EQ(disc.Image(), saved);
    EXPECT_TRUE(disc.messages.LogLines().empty());
  }
}

TEST(WriteBack, StuffsTheHeaderOfAPackBeforeFreedOnes) {
  PackDisc disc(MakeSubpicturePacks(UnitOfSize(3000), {}));
  SubpictureUnit unit = disc.GatherOne();
  const Bytes edited = UnitOfSize(2019 - 3);
  Replace(unit, edited, disc);
  ASSERT_EQ(disc.Write(unit), Result::kDone);
  const Sector pack = disc.ReadPack(0);
  ExpectData(pack, 8, edited);
  EXPECT_EQ(GetShort(pack, kPesLengthOffset), 2028);
  EXPECT_TRUE(IsFilled(ByteSpan(pack).subspan(28, 3), 0xFF));
  ExpectPadding(disc.ReadPack(1), kPesStartOffset);
  EXPECT_EQ(disc.Load(unit), Result::kDone);
  EXPECT_EQ(unit.state.bytes, edited);
}

TEST(WriteBack, ZeroFillsAGapThatNothingElseCloses) {
  // The second sequence begins inside the last command of the first one, so nothing can be moved.
  Bytes knot = UnitOfSize(2019 - 4);
  const std::size_t first = GetShort(knot, kSpuDcsqtOffset);
  const std::size_t inside = GetShort(knot, first + kSequenceNextOffset) - 1U;
  std::fill(knot.begin() + static_cast<long>(inside), knot.end() - 1, std::uint8_t{kStop});
  PutShort(knot, first + kSequenceNextOffset, static_cast<std::uint16_t>(inside));
  knot[inside] = kSetFieldOffsets;
  PutShort(knot, inside + kSequenceNextOffset, static_cast<std::uint16_t>(inside));
  PackDisc disc(MakeSubpicturePacks(UnitOfSize(400), {}));
  SubpictureUnit unit = disc.GatherOne();
  Replace(unit, knot, disc);
  ASSERT_EQ(disc.Write(unit), Result::kDone);
  const Sector pack = disc.ReadPack(0);
  ExpectData(pack, 5, knot);
  EXPECT_EQ(GetShort(pack, kPesLengthOffset), 2028);
  EXPECT_TRUE(IsFilled(ByteSpan(pack).last(4), 0));
  EXPECT_TRUE(disc.messages.Logged("Warning: Not enough room at LBA 1 for padding stream"));
  EXPECT_EQ(disc.Load(unit), Result::kDone);
  EXPECT_EQ(unit.state.bytes, knot);
}

TEST(WriteBack, FreedPacksCarryDataAgain) {
  const Bytes large = UnitOfSize(6000);
  PackDisc disc(MakeSubpicturePacks(large, {.stream = 0, .pts = 777}));
  SubpictureUnit unit = disc.GatherOne();
  Replace(unit, UnitOfSize(500), disc);
  ASSERT_EQ(disc.Write(unit), Result::kDone);
  for (const std::uint32_t index : {1U, 2U}) ExpectPadding(disc.ReadPack(index), kPesStartOffset);
  ASSERT_EQ(disc.Load(unit), Result::kDone);
  EXPECT_EQ(unit.packs.size(), 3U);
  EXPECT_EQ(unit.state.freeRoom, 2017 - 5 - 500 + 2 * 2024);
  Replace(unit, large, disc);
  ASSERT_EQ(disc.Write(unit), Result::kDone);
  EXPECT_EQ(disc.GatherOne().state.bytes, large);
  const Sector third = disc.ReadPack(2);
  EXPECT_EQ(Bytes(third.begin() + kPesFlagsOffset, third.begin() + kPesFlagsOffset + 3),
            (Bytes{0x81, 0, 0}));
}

TEST(WriteBack, RefusesBeforeItWrites) {
  PackDisc disc(MakeSubpicturePacks(UnitOfSize(3000), {}));
  const SubpictureUnit unit = disc.GatherOne();
  Bytes& image = disc.Image();
  const Bytes before = image;
  SubpictureUnit edited = unit;
  Replace(edited, UnitOfSize(400), disc);
  const auto refuse = [&](SubpictureUnit& refused) {
    const Bytes found = image;
    disc.messages.errors.clear();
    EXPECT_EQ(disc.Write(refused), Result::kFailed);
    EXPECT_EQ(disc.messages.errors.size(), 1U);
    EXPECT_EQ(image, found);
    image = before;
  };
  SubpictureUnit large = unit;
  Replace(large, UnitOfSize(2019 + 2024 + 1), disc);
  refuse(large);
  SubpictureUnit scrambled = edited;
  scrambled.scrambled = true;
  refuse(scrambled);
  // What something else has changed: flags, kind; data is compared by sums.
  image[2 * kSectorSize + kPesFlagsOffset] |= 0x10;
  refuse(edited);
  PutInt(image, 2 * kSectorSize + kPesStartOffset, kVideoStream);
  refuse(edited);

  image.resize(2 * kSectorSize + 100);
  EXPECT_EQ(disc.Write(edited), Result::kFailed);
  EXPECT_EQ(disc.messages.errors.back(), "Failed to seek/read 2-th subpic pack at LBA 2\n");
  EXPECT_EQ(disc.Load(edited), Result::kFailed);
  EXPECT_EQ(disc.messages.errors.back(), "Failed to re-load enough data");
}

TEST(WriteBack, ReportsTheWriteThatFailsAndCanBeRepeated) {
  for (int failing = 0; failing < 3; ++failing) {
    PackDisc disc(MakeSubpicturePacks(UnitOfSize(6000), {}));
    SubpictureUnit unit = disc.GatherOne();
    Replace(unit, UnitOfSize(1900, 20), disc);
    const SpuState edited = unit.state;
    disc.messages.files.FailWritesFrom(failing);
    EXPECT_EQ(disc.Write(unit), Result::kFailed);
    const std::string place = std::to_string(failing + 1);
    EXPECT_EQ(disc.messages.errors.back(),
              "Failed to write " + place + "-th subpic pack at LBA " + place + "\n");
    EXPECT_EQ(unit.state, edited);
    disc.messages.files.FailWritesFrom(-1);
    ASSERT_EQ(disc.Write(unit), Result::kDone);
    for (const std::uint32_t pack : {1, 2}) ExpectPadding(disc.ReadPack(pack), kPesStartOffset);
    EXPECT_EQ(disc.GatherOne().state.TotalSize(), 1880);
  }
}

TEST(Reload, DropsEditsAndKeepsTheUnitsIdentity) {
  PackDisc disc(MakeSubpicturePacks(UnitOfSize(1000), {.pts = 55}));
  SubpictureUnit unit = disc.GatherOne();
  unit.numberInStream = 4;
  unit.clut = 2;
  unit.globalTime = 1234;
  SpuState expected = unit.state;
  --expected.freeRoom;
  ASSERT_EQ(SetColour(unit, 9, kPattern), Result::kDone);
  unit.state.verticalOffset = 4;
  ASSERT_EQ(disc.Load(unit), Result::kDone);
  EXPECT_EQ(unit.state, expected);
  EXPECT_EQ(unit.currentColours, (PixelTypeValues{0, 1, 2, 3}));
  EXPECT_EQ(std::tuple(unit.number, unit.numberInStream, unit.clut, unit.globalTime),
            std::tuple(7, 4, 2, 1234));
}

TEST(WriteBack, RandomUnitsComeBackFromRandomPacks) {
  std::mt19937 random(20);
  const auto upTo = [&](unsigned most) { return static_cast<std::size_t>(random() % (most + 1)); };
  for (int round = 0; round < 150; ++round) {
    SubpictureSpec spec{.pts = random()};
    spec.firstHeaderLength = upTo(1) == 0 ? 5 : 8;
    const std::size_t size = 200 + upTo(6000);
    const std::size_t fewest = size / 2010 + 1;
    spec.packs = upTo(1) == 0 ? 0 : fewest + upTo(3);
    spec.paddingPacket = upTo(3) > 0;
    PackDisc disc(MakeSubpicturePacks(UnitOfSize(size, static_cast<int>(upTo(60))), spec));
    SubpictureUnit unit = disc.GatherOne();
    const Bytes authored = disc.Image();
    unit.state.modified = true;
    ASSERT_EQ(disc.Write(unit), Result::kDone);
    ASSERT_EQ(disc.Image(), authored) << "unedited, round " << round;
    for (int edit = 0; edit < 4; ++edit) {
      const std::size_t most =
          unit.state.bytes.size() + static_cast<std::size_t>(unit.state.freeRoom);
      const auto target = 200 + upTo(static_cast<unsigned>(std::max<std::size_t>(most, 200) - 200));
      Replace(unit, UnitOfSize(target, static_cast<int>(upTo(20))), disc);
      unit.state.pts = static_cast<std::uint32_t>(random());
      ASSERT_EQ(disc.Write(unit), Result::kDone) << round;
      ASSERT_NO_FATAL_FAILURE(ExpectSameSubtitle(disc, unit)) << round;
      const Bytes saved = disc.Image();
      EXPECT_TRUE(std::equal(saved.begin(), saved.begin() + kSectorSize, authored.begin()));
      EXPECT_TRUE(std::equal(saved.end() - kSectorSize, saved.end(), authored.end() - kSectorSize));
      const int writes = disc.messages.files.WritesDone();
      ASSERT_EQ(disc.Load(unit), Result::kDone);
      EXPECT_EQ(unit.state.bytes, disc.GatherOne().state.bytes);
      ASSERT_EQ(disc.Write(unit), Result::kDone);
      ASSERT_EQ(disc.messages.files.WritesDone(), writes) << round;
    }
    EXPECT_TRUE(disc.messages.errors.empty());
  }
}

}  // namespace
}  // namespace quillomar
