// Playing a disc through the editor, against a clock of the test's own.

#include <gtest/gtest.h>

#include <optional>

#include "disc/playing_editor.h"
#include "editor/audio_choices.h"
#include "editor/unit_frame.h"
#include "support/disc_copy.h"

namespace quillomar::test {
namespace {

// Times of English subtitles of the first VOB as their author wrote them, in seconds.
struct Shown {
  double start, end;
};
constexpr Shown kShown[] = {{0.8, 2.3}, {2.9, 4.85}, {5.4, 6.2}, {6.6, 8.6}};
constexpr double kLastTime = 8.6;
constexpr double kFrame = 0.04;

class EditorPlaybackTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no discs";
    disc_.emplace("pal");
    editor_.emplace(disc_->TitleVobs());
    (*editor_)->ChooseStream(1);
    editor_->WaitForFrame();
  }
  const View& Now() { return (*editor_)->CurrentView(); }
  // Of the frame shown, from the start of the set.
  double Time() { return static_cast<double>(Now().video.frame->globalTime) / 90000 - Origin(); }
  double Origin() {
    return static_cast<double>((*editor_)->Doc().Units().at(0)->globalTime) / 90000 -
           kShown[0].start;
  }
  int HighestAlpha() {
    int highest = 0;
    const auto& rgba = Now().picture.rgba;
    for (std::size_t i = 3; i < rgba.size(); i += 4) highest = std::max<int>(highest, rgba[i]);
    return highest;
  }

  std::optional<DiscCopy> disc_;
  std::optional<PlayingEditor> editor_;
};

TEST_F(EditorPlaybackTest, SubpicturesComeAndGoAtTheirTimes) {
  int shown = 0;
  int hidden = 0;
  const auto check = [&] {
    if (!Now().video.playing || !Now().video.frame || Time() > kLastTime) return;
    for (const auto& [start, end] : kShown) {
      const bool inside = Time() > start + kFrame && Time() < end - kFrame;
      const bool justAfter = Time() > end + 2 * kFrame && Time() < end + 0.3;
      EXPECT_TRUE(!inside || HighestAlpha() > 0) << Time();
      EXPECT_TRUE(!justAfter || Now().picture.rgba.empty()) << Time();
      shown += inside ? 1 : 0;
      hidden += justAfter ? 1 : 0;
    }
  };
  (*editor_)->Run(CommandId::kPlay);
  EXPECT_TRUE(Now().video.playing);
  editor_->RunWhile([&] { return Now().video.playing; }, check);
  EXPECT_FALSE(Now().video.playing);
  EXPECT_GT(shown, 20);
  EXPECT_GT(hidden, 5);
  // The list has followed to the last subpicture, and the sound was heard.
  EXPECT_EQ(Now().index, Now().count - 1);
  EXPECT_GT(editor_->SamplesHeard(), 48000U * 2 * 20);
}

TEST_F(EditorPlaybackTest, LoopStaysWithItsSubpictureWhichFadesIn) {
  (*editor_)->GoTo(1);
  (*editor_)->AddFade();
  double last = 0;
  int loops = 0;
  int faint = 0;
  (*editor_)->Run(CommandId::kPlayLoop);
  EXPECT_TRUE(Now().video.looping);
  editor_->RunWhile([&] { return loops < 2; },
                    [&] {
                      if (!Now().video.frame) return;
                      if (Time() < last) ++loops;
                      last = Time();
                      EXPECT_GT(Time(), kShown[1].start - 1 - 2 * kFrame);
                      EXPECT_LT(Time(), kShown[1].end + 1 + 2 * kFrame);
                      if (HighestAlpha() > 0 && HighestAlpha() < 255) ++faint;
                    });
  EXPECT_GT(faint, 0);
  EXPECT_EQ(Now().index, 1);
  (*editor_)->Run(CommandId::kPlay);
  EXPECT_FALSE(Now().video.playing);
}

TEST_F(EditorPlaybackTest, MovingOnAndWritingEndIt) {
  const auto isFrameOfCurrent = [this] {
    const FrameRequest wanted = FrameRequestFor(*(*editor_)->List().Current());
    const std::int64_t off = *wanted.pts + wanted.timeOffset - Now().video.frame->globalTime;
    return off >= 0 && off < Now().video.frame->duration;
  };
  EXPECT_TRUE(isFrameOfCurrent());
  (*editor_)->Run(CommandId::kPlay);
  editor_->RunWhile([&] { return Time() < 1.5; }, [] {});
  (*editor_)->GoTo(3);
  EXPECT_FALSE(Now().video.playing);
  editor_->WaitForFrame();
  EXPECT_TRUE(isFrameOfCurrent());
  (*editor_)->Video().Step(1);
  editor_->WaitForFrame();
  EXPECT_FALSE(isFrameOfCurrent());
  (*editor_)->Run(CommandId::kPlay);
  (*editor_)->SetForced(true);
  (*editor_)->Run(CommandId::kSaveAll);
  EXPECT_FALSE(Now().video.playing);
  EXPECT_FALSE((*editor_)->Doc().Modified());
}

TEST(AudioChoicesTest, WhatCannotBePlayedSaysSoAndIsNotHeard) {
  CellEntry cell;
  cell.audio[0] = AudioStreamInfo{"DTS", "en", 6, 0x88};
  cell.audio[2] = AudioStreamInfo{"Mpeg1", "fr", 2, 0x80};
  cell.audio[3] = AudioStreamInfo{"LPCM", "de", 2, 0xA3};
  const auto choices = AudioChoicesOf(&cell);
  ASSERT_EQ(choices.size(), 3U);
  EXPECT_EQ(choices[0].label, "DTS (can't play)");
  EXPECT_EQ(choices[1].label, "MPEG Audio (can't play)");
  EXPECT_EQ(choices[0].subStreamId, kNoAudio);
  EXPECT_EQ(choices[1].subStreamId, kNoAudio);
  EXPECT_EQ(choices[2].subStreamId, 0xA3);
}

}  // namespace
}  // namespace quillomar::test
