// Edits on authored discs: what was asked is what FFmpeg shows after saving.

#include <random>

#include "disc/disc_test.h"
#include "editor/unit_edits.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"
#include "spu/run_length.h"
#include "support/disc_copy.h"

namespace quillomar {
namespace {

using test::Cli;
using test::FfmpegSubtitle;
using test::FileBytes;
using test::OpenEditor;

// What FFmpeg shows is what the unit's first sequence says.
void ExpectSamePicture(SubpictureUnit& unit, const FfmpegSubtitle& other,
                       const SpuContext& context) {
  (void)SelectControlSequence(unit, 0);
  ASSERT_EQ(NeedBitmap(unit, context), Result::kDone);
  const int lines = FrameHeight(context.standard);
  EXPECT_TRUE(test::ScreenOf(unit, lines) == test::ScreenOf(other, lines));
}

class EditedDisc : public test::DiscTest {
 protected:
  void SetUp() override {
    test::DiscTest::SetUp();
    if (!IsSkipped()) before = test::ReadWithFfmpeg(vobs);
  }

  // Sets on all subpictures, saves, and gives FFmpeg's reading.
  std::vector<FfmpegSubtitle> Set(std::vector<std::string> edits) {
    edits.insert(edits.begin(), {"set", "--yes"});
    const auto outcome = Cli(edits, vobs);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto after = test::ReadWithFfmpeg(vobs);
    EXPECT_EQ(after.size(), before.size());
    return after;
  }

  [[nodiscard]] static bool IsPalDisc() { return std::string(GetParam()) == "pal"; }
  [[nodiscard]] static int Frame() { return IsPalDisc() ? 576 : 480; }
  static test::Screen ScreenOf(const FfmpegSubtitle& subtitle) {
    return test::ScreenOf(subtitle, Frame());
  }

  std::vector<FfmpegSubtitle> before;
};

TEST_P(EditedDisc, MovesShiftThePictureByWhatWasAsked) {
  for (const int up : {1, -1, 2, -2, 3, -3, 0}) {
    const int right = 3 * up;
    const auto after = Set({"--move-y", std::to_string(up), "--move-x", std::to_string(right)});
    for (std::size_t i = 0; i < after.size(); ++i) {
      test::Screen was = ScreenOf(before[i]);
      test::Screen is = ScreenOf(after[i]);
      std::rotate(is.begin(), is.begin() + (Frame() - up) % Frame(), is.end());
      for (std::string& line : is) {
        std::rotate(line.begin(), line.begin() + (kPictureWidth + right) % kPictureWidth,
                    line.end());
      }
      // An odd move swaps the fields and costs the bitmap's first row.
      const auto first = static_cast<std::size_t>(before[i].y);
      if (up % 2 != 0) was[first] = is[first] = "";
      EXPECT_TRUE(is == was) << up << " up, subpicture " << i + 1;
      EXPECT_EQ(after[i].pts, before[i].pts);
      EXPECT_EQ(after[i].endMs, before[i].endMs);
    }
    // Each run opens the disc anew, so the next one starts from where this one left it.
    before = after;
  }
}

TEST_P(EditedDisc, BordersKeepThePictureBetweenThem) {
  constexpr int kBorder = 100;
  const auto firstAndLast = [this](const FfmpegSubtitle& subtitle) {
    std::vector<int> lines;
    const test::Screen screen = ScreenOf(subtitle);
    for (std::size_t y = 0; y < screen.size(); ++y) {
      if (screen[y].find_first_not_of(' ') != std::string::npos)
        lines.push_back(static_cast<int>(y));
    }
    return std::pair(lines.front(), lines.back());
  };
  for (const FfmpegSubtitle& subtitle : Set({"--border", std::to_string(kBorder)})) {
    EXPECT_GE(firstAndLast(subtitle).first, kBorder);
    EXPECT_LE(firstAndLast(subtitle).second, Frame() - kBorder);
  }
  constexpr int kFlushBorder = 20;
  const auto flush = Set({"--border", std::to_string(kFlushBorder), "--flush", "--numbers", "1"});
  EXPECT_EQ(firstAndLast(flush.front()).second, Frame() - kFlushBorder);
}

TEST_P(EditedDisc, TimesAreWhatWasSet) {
  const auto longer = Set({"--duration", "1480"});
  const double frameMs = IsPalDisc() ? 40.0 : 33.366665;
  const double expected = std::round(1480 / frameMs) * frameMs;
  for (const FfmpegSubtitle& subtitle : longer) {
    ASSERT_TRUE(subtitle.hasEnd);
    // A delay counts units of 11.4 ms, truncated.
    EXPECT_LE(subtitle.endMs, expected + 1);
    EXPECT_GT(subtitle.endMs, expected - 13);
  }
  for (const FfmpegSubtitle& subtitle : Set({"--infinite", "--start", "forced"})) {
    EXPECT_FALSE(subtitle.hasEnd);
    EXPECT_TRUE(subtitle.forced);
  }
  for (const FfmpegSubtitle& subtitle : Set({"--stop", "--start", "normal"})) {
    EXPECT_TRUE(subtitle.hasEnd);
    EXPECT_FALSE(subtitle.forced);
  }
}

TEST_P(EditedDisc, HidingAndCroppingKeepTheRest) {
  const auto cropped = Set({"--crop"});
  for (std::size_t i = 0; i < cropped.size(); ++i) {
    EXPECT_EQ(cropped[i].types, before[i].types);
    EXPECT_EQ(cropped[i].x, before[i].x);
    EXPECT_EQ(cropped[i].y, before[i].y);
  }
  // FFmpeg leaves out what cannot be seen.
  ASSERT_EQ(Cli({"set", "--yes", "--hide", "--numbers", "2"}, vobs).exitCode, 0);
  EXPECT_EQ(test::ReadWithFfmpeg(vobs).size(), before.size() - 1);
  OpenEditor editor(vobs);
  EXPECT_EQ(editor->Doc().Units()[1]->currentAlphas, PixelTypeValues{});
  EXPECT_NE(editor->Doc().Units()[0]->currentAlphas, PixelTypeValues{});
}

UnitEdits RandomEdit(std::mt19937& random) {
  const auto number = [&random](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  UnitEdits edits;
  switch (number(0, 9)) {
    case 0:
      edits.moveUp = number(-600, 600);
      break;
    case 1:
      edits.moveUp = number(-4, 4);
      break;
    case 2:
      edits.moveRight = number(-100, 100);
      break;
    case 3:
      edits.border = number(0, 120);
      edits.flush = number(0, 1) == 1;
      break;
    case 4:
      edits.crop = true;
      break;
    case 5:
      edits.fade = number(0, 1) == 0 ? FadeEdit::kAdd : FadeEdit::kRemove;
      break;
    case 6:
      edits.durationMs = number(0, 20000);
      break;
    case 7:
      edits.end = number(0, 1) == 0 ? EndEdit::kAddStop : EndEdit::kInfinite;
      break;
    case 8:
      edits.forcedStart = number(0, 1) == 1;
      break;
    default:
      edits.colours.push_back({number(0, 5), number(0, 15)});
      edits.alphas.push_back({number(0, 5), number(0, 15)});
  }
  return edits;
}

void ExpectSound(const SubpictureUnit& unit, int room, const SpuContext& context) {
  const SpuState& state = unit.state;
  EXPECT_EQ(state.TotalSize() + state.freeRoom, room);
  EXPECT_GE(state.freeRoom, 0);
  EXPECT_LT(state.topOffset, state.TotalSize());
  EXPECT_LT(state.bottomOffset, state.TotalSize());
  EXPECT_LT(state.area.ex, kPictureWidth);
  SubpictureUnit again;
  again.complete = true;
  again.state.bytes = state.bytes;
  ASSERT_EQ(ParseControlSequences(again, 0, 0, context), Result::kDone);
  EXPECT_EQ(again.state.sequences, state.sequences);
  EXPECT_EQ(again.state.area, state.area);
}

TEST_P(EditedDisc, AnySeriesOfEditsLeavesSoundUnits) {
  constexpr unsigned kSeed = 20261121;
  constexpr int kEditsEach = 16;
  OpenEditor editor(vobs);
  const SpuContext context = editor->Doc().Context();
  std::mt19937 random(kSeed);
  int done = 0;
  for (const UnitPointer& unit : editor->Doc().Units()) {
    const int room = unit->state.TotalSize() + unit->state.freeRoom;
    for (int i = 0; i < kEditsEach; ++i) {
      SCOPED_TRACE("subpicture " + std::to_string(unit->number) + ", edit " + std::to_string(i));
      const UnitEdits edits = RandomEdit(random);
      const Bytes bytes = unit->state.bytes;
      std::string refusal;
      if (Failed(ApplyEdits(Document::Unrecorded(unit), edits, {}, context, refusal))) {
        EXPECT_EQ(unit->state.bytes, bytes);
        EXPECT_FALSE(refusal.empty());
      } else {
        ++done;
      }
      ExpectSound(*unit, room, context);
      ExpectSamePicture(Document::Unrecorded(unit), test::DecodeWithFfmpeg(unit->state.bytes),
                        context);
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(done, 300);

  // What was edited is what is on the disc.
  std::vector<FfmpegSubtitle> edited;
  for (const UnitPointer& unit : editor->Doc().Units()) {
    edited.push_back(test::DecodeWithFfmpeg(unit->state.bytes));
  }
  editor->Run(CommandId::kSaveAll);
  ASSERT_FALSE(editor->Doc().Modified());
  OpenEditor again(vobs);
  const UnitList units = again->Doc().Units();
  ASSERT_EQ(units.size(), edited.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    SCOPED_TRACE("subpicture " + std::to_string(i + 1));
    SubpictureUnit& unit = Document::Unrecorded(units[i]);
    ExpectSamePicture(unit, edited[i], context);
    ExpectSamePicture(unit, test::DecodeWithFfmpeg(unit.state.bytes), context);
  }
}

INSTANTIATE_TEST_SUITE_P(Discs, EditedDisc, testing::Values("ntsc", "pal"), test::DiscName);

}  // namespace
}  // namespace quillomar
