// Discs that are not as they should be, or not as the demo discs are.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "dvd/big_endian.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"
#include "video/fake_playback.h"
#include "video/video_disc.h"
#include "video/video_packet.h"

namespace quillomar::test {
namespace {

constexpr std::uint8_t kExtension = 0xB5;

using Pack = std::span<std::uint8_t, kSectorSize>;

class DamageTest : public DiscTest {
 protected:
  void SetUp() override {
    DiscTest::SetUp();
    if (copy_) path_ = copy_->TitleVobs().front();
  }

  void ForEachPack(const std::function<void(Pack, PackKind)>& change) {
    Bytes image = FileBytes(path_);
    for (std::size_t at = 0; at < image.size(); at += kSectorSize) {
      const auto sector = std::span(image).subspan(at).first<kSectorSize>();
      change(sector, ClassifyPack(sector).kind);
    }
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<const char*>(image.data()),
               static_cast<std::streamsize>(image.size()));
  }
  // `change` gets the bytes from the extension's start code on.
  void ForEachExtension(const std::function<void(std::span<std::uint8_t>)>& change) {
    ForEachPack([&](Pack sector, PackKind kind) {
      for (std::size_t i = kPesHeaderDataOffset; i + 9 < kSectorSize; ++i) {
        const bool found = kind == PackKind::kVideo && GetInt(sector, i) == (0x100 | kExtension);
        if (found) change(sector.subspan(i));
      }
    });
  }
  // Counters of the pictures of all units; -1 without a picture.
  std::vector<int> Counters() {
    VideoDisc disc({path_});
    std::vector<int> counters;
    for (const UnitPlace& unit : disc.Units()) {
      const FramePointer frame = disc.Show(unit.Request());
      counters.push_back(frame ? ReadCounter(*frame) : -1);
    }
    return counters;
  }

  std::string path_;
};

TEST_F(DamageTest, VideoOfTypeMpeg1IsRefusedOnce) {
  constexpr std::uint8_t kUserData = 0xB2;
  ForEachExtension([](auto bytes) { bytes[3] = kUserData; });
  VideoDisc disc({path_});
  for (const UnitPlace& unit : disc.Units()) EXPECT_FALSE(disc.Show(unit.Request()));
  EXPECT_EQ(disc.messages.errors,
            std::vector<std::string>{"The background video seems to be of type MPEG-1\n"
                                     "Quillomar can't display MPEG-1 video at this point"});
  EXPECT_TRUE(disc.engine.Properties()->mpeg1);
}

TEST_F(DamageTest, AnyDamageEndsAndIsLogged) {
  std::mt19937 random(1);
  ForEachPack([&](Pack sector, PackKind kind) {
    for (int i = 0; i < 3 && kind == PackKind::kVideo; ++i) {
      const std::size_t at = kPackHeaderSize + random() % (kSectorSize - kPackHeaderSize);
      sector[at] = static_cast<std::uint8_t>(random());
    }
  });
  const auto counters = Counters();
  EXPECT_LT(std::count(counters.begin(), counters.end(), -1), std::ssize(counters));
  FakeClock clock;
  VideoDisc disc({path_}, nullptr, &clock);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(disc.Play({}).empty());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  const auto lines = disc.messages.LogLines();
  EXPECT_GT(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) {
                            return line.find("Video decoder: ") != std::string::npos;
                          }),
            0);
}

// As bought discs have them: one time stamp for each VOBU, and pointers that end at the cells.
TEST_F(DamageTest, FewTimeStampsAndNoPointersGiveTheSamePictures) {
  const std::vector<int> expected = Counters();
  bool stamped = false;
  ForEachPack([&](Pack sector, PackKind kind) {
    if (kind == PackKind::kNav) {
      stamped = false;
      PutInt(sector, kNavNextVobuOffset, kNavNoDistance);
      PutInt(sector, kNavPreviousVobuOffset, 0x8000'0003);
    }
    if (kind != PackKind::kVideo || !PacketTime(sector)) return;
    if (stamped) sector[kPesFlags2Offset] = 0;
    stamped = true;
  });
  EXPECT_EQ(Counters(), expected);
}

TEST_F(DamageTest, PlaybackEndsWithTheSetAndLeavesAStillWithoutCombs) {
  // The flags for progressive video, in the extensions of sequence and picture.
  ForEachExtension([](auto bytes) {
    if (bytes[4] >> 4 == 1) bytes[5] &= 0xF7;
    if (bytes[4] >> 4 == 8) bytes[8] &= 0x7F;
  });
  FakeClock clock;
  VideoDisc disc({path_}, nullptr, &clock);
  const auto units = disc.Units();
  const auto frames = disc.Play({units.back().Request(), {}, false, 0});
  ASSERT_GE(frames.size(), 2U);
  const VideoFrame& last = *frames.back();
  const VideoFrame& played = *frames[frames.size() - 2];
  EXPECT_EQ(ReadCounter(last), 3000 + 419 - 1);
  EXPECT_EQ(last.globalTime, played.globalTime);
  EXPECT_FALSE(last.rgb == played.rgb);
  EXPECT_TRUE(last.rgb == disc.Show({last.navLba, last.pts})->rgb);
}

TEST_F(DamageTest, ForgottenPicturesAreReadAgain) {
  VideoDisc disc({path_});
  const auto units = disc.Units();
  std::vector<FrameRequest> requests;
  for (std::size_t i = 0; i < 8; ++i) requests.push_back(units[i].Request());
  disc.engine.Prefetch(requests);
  while (disc.engine.RememberedBytes() == 0) std::this_thread::yield();
  const FramePointer before = disc.Show(requests.front());
  EXPECT_EQ(disc.Show(requests.front()), before);
  disc.engine.Prefetch(requests);
  disc.engine.ForgetPictures();
  EXPECT_EQ(disc.engine.RememberedBytes(), 0U);
  std::filesystem::resize_file(path_, 0);
  EXPECT_FALSE(disc.Show(requests.front()));
  EXPECT_FALSE(disc.Show({disc.set.TotalSectors() + 7, 0}));
}

}  // namespace
}  // namespace quillomar::test
