// Requests in any order and at any moment, in real time.

#include <gtest/gtest.h>

#include <random>

#include "video/video_disc.h"

namespace quillomar::test {
namespace {

class RequestsTest : public DiscTest {
 protected:
  void SetUp() override {
    DiscTest::SetUp();
    if (!copy_) return;
    disc_.emplace(copy_->TitleVobs());
    units_ = disc_->Units();
    disc_->engine.Attach({[this](VideoNotification n) {
      if (n == ID_PLAYBACK_STOPPED) ++ended_;
    }});
  }
  std::string Name() const override { return "split"; }

  FrameRequest At(std::size_t index) const { return units_[index % units_.size()].Request(); }

  std::optional<VideoDisc> disc_;
  std::vector<UnitPlace> units_;
  std::atomic<int> ended_ = 0;
};

TEST_F(RequestsTest, AThousandAtRandom) {
  VideoEngine& engine = disc_->engine;
  std::mt19937 random(7);
  int played = 0;
  for (int i = 0; i < 1000; ++i) {
    const std::size_t number = random();
    switch (random() % 8) {
      case 0:
      case 1:
        engine.ShowFrame(At(number));
        break;
      case 2:
        engine.Step(number % 2 == 0 ? 1 : -1);
        break;
      case 3:
        if (engine.Play({At(number), std::nullopt, number % 2 == 0, 0})) ++played;
        break;
      case 4:
        engine.Prefetch({At(number), At(number + 1)});
        break;
      case 5:
        engine.ForgetPictures();
        break;
      case 6:
        std::this_thread::sleep_for(std::chrono::microseconds(number % 4000));
        break;
      default:
        EXPECT_EQ(engine.Stop(), Result::kDone);
        EXPECT_FALSE(engine.Running());
    }
  }
  EXPECT_EQ(engine.Stop(), Result::kDone);
  EXPECT_GT(played, 10);
  EXPECT_EQ(ended_, played);
}

TEST_F(RequestsTest, ARequestDuringAnotherIsIgnored) {
  VideoEngine& engine = disc_->engine;
  ASSERT_TRUE(engine.Play({At(0), std::nullopt, false, 0}));
  EXPECT_FALSE(engine.Play({At(0), std::nullopt, false, 0}));
  EXPECT_FALSE(engine.ShowFrame(At(3)));
  EXPECT_FALSE(engine.Step(1));
  int pumped = 0;
  EXPECT_EQ(engine.Wait([&] { ++pumped; }), Result::kFailed) << "the disc plays for longer";
  EXPECT_GT(pumped, 10);
  const auto began = std::chrono::steady_clock::now();
  EXPECT_EQ(engine.Stop(), Result::kDone);
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(500));
  EXPECT_EQ(ended_, 1);
  EXPECT_TRUE(engine.ShowFrame(At(3)));
}

}  // namespace
}  // namespace quillomar::test
