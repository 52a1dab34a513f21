// Discs that are not as they should be: a picture or none, and an end in any case.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "dvd/big_endian.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"
#include "video/video_disc.h"
#include "video/video_packet.h"

namespace quillomar::test {
namespace {

void WriteFile(const std::string& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

class DamageTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no discs";
    copy_.emplace("ntsc");
    path_ = copy_->TitleVobs().front();
    image_ = FileBytes(path_);
  }

  using Change = std::function<void(std::span<std::uint8_t, kSectorSize>)>;
  void ForEachVideoPack(const Change& change) {
    for (std::size_t at = 0; at < image_.size(); at += kSectorSize) {
      const auto sector = std::span(image_).subspan(at).first<kSectorSize>();
      if (ClassifyPack(sector).kind == PackKind::kVideo) change(sector);
    }
    WriteFile(path_, image_);
  }

  std::optional<DiscCopy> copy_;
  std::string path_;
  Bytes image_;
};

TEST_F(DamageTest, VideoOfTypeMpeg1IsRefusedOnce) {
  constexpr std::uint8_t kUserData = 0xB2;
  ForEachVideoPack([](auto sector) {
    for (std::size_t i = kPesHeaderDataOffset; i + 3 < kSectorSize; ++i) {
      const bool extension =
          sector[i] == 0 && sector[i + 1] == 0 && sector[i + 2] == 1 && sector[i + 3] == 0xB5;
      if (extension) sector[i + 3] = kUserData;
    }
  });
  VideoDisc disc({path_});
  for (const UnitPlace& unit : disc.Units()) EXPECT_FALSE(disc.Show({unit.lba, unit.pts}));
  EXPECT_EQ(disc.messages.errors,
            std::vector<std::string>{"The background video seems to be of type MPEG-1\n"
                                     "Quillomar can't display MPEG-1 video at this point"});
  ASSERT_TRUE(disc.engine.Properties());
  EXPECT_TRUE(disc.engine.Properties()->mpeg1);
}

TEST_F(DamageTest, NoVideoIsNoPicture) {
  ForEachVideoPack([](auto sector) {
    sector[kPesStartOffset + 3] = static_cast<std::uint8_t>(kPaddingStream & 0xFF);
  });
  VideoDisc disc({path_});
  for (const UnitPlace& unit : disc.Units()) EXPECT_FALSE(disc.Show({unit.lba, unit.pts}));
  EXPECT_EQ(disc.notifications.size(), disc.Units().size());
  EXPECT_FALSE(disc.engine.Properties());
}

TEST_F(DamageTest, AnyDamageEnds) {
  std::mt19937 random(1);
  ForEachVideoPack([&](auto sector) {
    for (int i = 0; i < 3; ++i) {
      const std::size_t at = kPackHeaderSize + random() % (kSectorSize - kPackHeaderSize);
      sector[at] = static_cast<std::uint8_t>(random());
    }
  });
  VideoDisc disc({path_});
  int shown = 0;
  for (const UnitPlace& unit : disc.Units()) {
    if (disc.Show({unit.lba, unit.pts})) ++shown;
  }
  EXPECT_GT(shown, 0);
}

// As bought discs have them: one time stamp for each VOBU, and pointers that end at the cells.
TEST_F(DamageTest, FewTimeStampsAndNoPointersGiveTheSamePictures) {
  std::vector<int> expected;
  {
    VideoDisc disc({path_});
    for (const UnitPlace& unit : disc.Units()) {
      expected.push_back(ReadCounter(*disc.Show({unit.lba, unit.pts})));
    }
  }
  bool stamped = false;
  for (std::size_t at = 0; at < image_.size(); at += kSectorSize) {
    const auto sector = std::span(image_).subspan(at).first<kSectorSize>();
    const PackKind kind = ClassifyPack(sector).kind;
    if (kind == PackKind::kNav) {
      stamped = false;
      PutInt(sector, kNavNextVobuOffset, kNavNoDistance);
      PutInt(sector, kNavPreviousVobuOffset, 0x8000'0003);
    }
    if (kind != PackKind::kVideo || !PacketTime(sector)) continue;
    if (stamped) sector[kPesFlags2Offset] = 0;
    stamped = true;
  }
  WriteFile(path_, image_);
  VideoDisc disc({path_});
  std::vector<int> found;
  for (const UnitPlace& unit : disc.Units()) {
    found.push_back(ReadCounter(*disc.Show({unit.lba, unit.pts})));
  }
  EXPECT_EQ(found, expected);
}

TEST_F(DamageTest, TruncatedFileShowsWhatIsLeft) {
  VideoDisc disc({path_});
  const auto units = disc.Units();
  const UnitPlace& last = units[units.size() / 2];
  std::filesystem::resize_file(path_, (last.lba + 2) * kSectorSize + 100);
  for (const UnitPlace& unit : units) {
    const FramePointer frame = disc.Show({unit.lba, unit.pts});
    if (unit.lba < last.lba) {
      EXPECT_TRUE(frame) << unit.lba;
    }
  }
  EXPECT_FALSE(disc.Show({disc.set.TotalSectors() + 7, 0}));
}

TEST_F(DamageTest, ForgottenPicturesAreReadAgain) {
  VideoDisc disc({path_});
  const auto units = disc.Units();
  std::vector<FrameRequest> requests;
  for (std::size_t i = 0; i < 8; ++i) requests.push_back({units[i].lba, units[i].pts});
  disc.engine.Prefetch(requests);
  while (disc.engine.RememberedBytes() == 0) std::this_thread::yield();
  const FramePointer before = disc.Show(requests.front());
  EXPECT_EQ(disc.Show(requests.front()), before);
  disc.engine.Prefetch(requests);
  disc.engine.ForgetPictures();
  EXPECT_EQ(disc.engine.RememberedBytes(), 0U);
  std::filesystem::resize_file(path_, 0);
  EXPECT_FALSE(disc.Show(requests.front()));
}

}  // namespace
}  // namespace quillomar::test
