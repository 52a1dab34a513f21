// Moves and borders, against a model of the screen and through FFmpeg's decoder.
#include "spu/position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "disc/ffmpeg_subtitles.h"
#include "pack_disc.h"
#include "spu/parse.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

using namespace test;

constexpr int kScreenLines = 600;

Screen ScreenOf(const SubpictureUnit& unit) {
  return test::ScreenOf(unit, kScreenLines);
}

Screen FfmpegScreen(const Bytes& bytes) {
  return test::ScreenOf(DecodeWithFfmpeg(bytes), kScreenLines);
}

void CutAt(Screen& screen, int line) {
  for (auto row = screen.begin() + line; row != screen.end(); ++row) {
    row->assign(kPictureWidth, ' ');
  }
}

// A subtitle and where a move promises to show it.
struct Model {
  std::vector<std::string> rows;
  int x, y;
  VideoStandard standard;

  [[nodiscard]] int Frame() const { return FrameHeight(standard); }
  [[nodiscard]] static bool HasContent(const std::string& row) {
    return row.find_first_not_of('0') != std::string::npos;
  }
  [[nodiscard]] int Top() const {
    return static_cast<int>(std::find_if(rows.begin(), rows.end(), HasContent) - rows.begin());
  }
  [[nodiscard]] int Bottom() const {
    return static_cast<int>(rows.rend() - std::find_if(rows.rbegin(), rows.rend(), HasContent)) - 1;
  }

  // The offset that a move to `wanted` lines up reaches inside a border.
  [[nodiscard]] int Reach(int wanted, int border, bool even) const {
    const int reached =
        std::max(std::min(wanted, y + Top() - border), y + Bottom() - (Frame() - border));
    return even ? reached - reached % 2 : reached;
  }
  // Content shifted up; an odd move down loses its first row, one to the top what passes line 2, or
  // the line it was found on.
  [[nodiscard]] Screen Moved(int up, int right) const {
    Screen screen(kScreenLines, std::string(kPictureWidth, ' '));
    const int firstLine = up > 0 ? std::max(std::min(y, 2), y - up + up % 2) : 0;
    for (std::size_t row = up < 0 && up % 2 != 0 ? 1 : 0; row < rows.size(); ++row) {
      const int line = y + static_cast<int>(row) - up;
      if (line < firstLine) continue;
      screen.at(static_cast<std::size_t>(line))
          .replace(static_cast<std::size_t>(x + right), rows[row].size(), rows[row]);
    }
    for (std::string& line : screen) std::replace(line.begin(), line.end(), '0', ' ');
    return screen;
  }
  [[nodiscard]] std::vector<Sector> Packs() const {
    return MakeSubpicturePacks(BuildSpu(Subtitle(rows, x, y, 90)), {});
  }
};

// Rows of background around random ones.
std::vector<std::string> PaddedRows(unsigned seed, int height, int above, int below) {
  auto rows = RandomRows(seed, 30, height - above - below, 9);
  rows.front()[3] = rows.back()[4] = '2';
  const std::string blank(30, '0');
  rows.insert(rows.begin(), static_cast<std::size_t>(above), blank);
  rows.insert(rows.end(), static_cast<std::size_t>(below), blank);
  return rows;
}

// The unit, and after a save the disc, must show the model moved; moving back must undo it all.
void CheckMove(const Model& model, int wanted, bool even) {
  PackDisc disc(model.Packs());
  disc.standard = model.standard;
  SubpictureUnit unit = disc.GatherOne();
  const Bytes found = unit.state.bytes;
  ASSERT_EQ(MoveVertical(unit, 3, false, disc.Context()), Result::kDone);
  ASSERT_EQ(MoveVertical(unit, wanted, even, disc.Context()), Result::kDone);
  const int reached = model.Reach(wanted, 0, even);
  EXPECT_EQ(unit.state.verticalOffset, reached);

  const Screen whole = model.Moved(reached, 0);
  Screen visible = whole;
  CutAt(visible, model.Frame());
  EXPECT_TRUE(ScreenOf(unit) == visible);
  EXPECT_TRUE(FfmpegScreen(unit.state.bytes) == whole);

  SubpictureUnit cropped = unit;
  ASSERT_EQ(CropBackground(cropped, {1, 1}, disc.Context()), Result::kDone);
  EXPECT_EQ(cropped.state.verticalOffset, reached);
  EXPECT_TRUE(FfmpegScreen(cropped.state.bytes) == whole);
  const Bytes once = cropped.state.bytes;
  ASSERT_EQ(CropBackground(cropped, {1, 1}, disc.Context()), Result::kDone);
  EXPECT_EQ(cropped.state.bytes, once);

  ASSERT_EQ(disc.Write(unit), Result::kDone);
  SubpictureUnit saved = disc.GatherOne();
  EXPECT_LT(saved.state.topOffset, saved.state.bottomOffset);
  ASSERT_EQ(DecodeBitmap(saved, disc.Context()), Result::kDone);
  EXPECT_TRUE(ScreenOf(saved) == visible);
  EXPECT_TRUE(FfmpegScreen(saved.state.bytes) == whole);
  SubpictureUnit reloaded = unit;
  ASSERT_EQ(disc.Load(reloaded), Result::kDone);
  EXPECT_EQ(reloaded.state.bytes, saved.state.bytes);
  EXPECT_EQ(reloaded.state.hiddenRows, 0);

  ASSERT_EQ(MoveVertical(unit, 0, even, disc.Context()), Result::kDone);
  EXPECT_EQ(unit.state.bytes, found);
}

TEST(Position, MovesShowContentShiftedAndCut) {
  unsigned seed = 0;
  for (const auto standard : {VideoStandard::kPal, VideoStandard::kNtsc}) {
    const int frame = FrameHeight(standard);
    for (const int height : {8, 9}) {
      for (const int y : {0, 1, 2, 5, 100, 101, frame - 30, frame - height}) {
        ++seed;
        const Model model{PaddedRows(seed, height, static_cast<int>(seed % 3), 1), 60, y, standard};
        for (const int v : {-3, -2, -1, 0, 1, 2, 3, y - 1, y, y + 1, 900, -900, y - frame + 9}) {
          for (const bool even : {false, true}) {
            SCOPED_TRACE(testing::Message() << frame << " height " << height << " y " << y << " v "
                                            << v << (even ? " even" : ""));
            ASSERT_NO_FATAL_FAILURE(CheckMove(model, v, even));
            if (testing::Test::HasFailure()) return;
          }
        }
      }
    }
  }
}

TEST(Position, KeepsThreeRowsAndALineInTheFrame) {
  // Content at one end only would let the whole area leave the frame.
  const std::string blank(8, '0');
  const std::string text(8, '1');
  for (std::size_t height = 1; height <= 7; ++height) {
    std::vector<std::string> first(height, blank);
    std::vector<std::string> last(height, blank);
    first.front() = last.back() = text;
    for (const auto& rows : {first, last}) {
      for (const int y : {0, 1, 3, 200}) {
        PackDisc disc(Model{rows, 60, y, VideoStandard::kPal}.Packs());
        SubpictureUnit unit = disc.GatherOne();
        const Bytes found = unit.state.bytes;
        for (const int v : {900, -900, -901, 7, 1, -1, y, y - 575, y - 576}) {
          ASSERT_EQ(MoveVertical(unit, v, false, disc.Context()), Result::kDone);
          EXPECT_GE(unit.state.area.Lines(),
                    std::min<int>(static_cast<int>(height), v > 0 ? 3 : 1));
          EXPECT_LT(unit.state.area.sy, 576);
          EXPECT_EQ(unit.state.height, unit.state.area.LinesInFrame(576));
          ASSERT_EQ(disc.Write(unit), Result::kDone);
          SubpictureUnit saved = disc.GatherOne();
          ASSERT_EQ(DecodeBitmap(saved, disc.Context()), Result::kDone);
          EXPECT_TRUE(ScreenOf(saved) == ScreenOf(unit)) << height << " " << y << " " << v;
        }
        ASSERT_EQ(MoveVertical(unit, 0, false, disc.Context()), Result::kDone);
        EXPECT_EQ(unit.state.bytes, found);
      }
    }
  }
}

TEST(Position, HorizontalMovesStopAtTheEdges) {
  const Model model{PaddedRows(1, 8, 0, 0), 60, 300, VideoStandard::kPal};
  PackDisc disc(model.Packs());
  SubpictureUnit unit = disc.GatherOne();
  const Bytes found = unit.state.bytes;
  for (const auto& [wanted, reached] :
       {std::pair(7, 7), {-60, -60}, {-61, -60}, {630, 630}, {631, 630}, {5000, 630}, {-5, -5}}) {
    ASSERT_EQ(MoveHorizontal(unit, wanted, disc.Context()), Result::kDone);
    EXPECT_EQ(unit.state.horizontalOffset, reached);
    EXPECT_TRUE(ScreenOf(unit) == model.Moved(0, reached));
    EXPECT_TRUE(FfmpegScreen(unit.state.bytes) == model.Moved(0, reached));
  }
  ASSERT_EQ(MoveHorizontal(unit, 0, disc.Context()), Result::kDone);
  EXPECT_EQ(unit.state.bytes, found);

  EXPECT_TRUE(IsNarrowerThanPicture(unit));
  unit.state.width = 710;
  EXPECT_FALSE(IsNarrowerThanPicture(unit));
}

TEST(Position, BordersPushContentInside) {
  struct Case {
    int y, border;
    bool flush;
    int moved;  // lines up
  };
  // Ten rows with content in 1 to 8; the last content line may stand on line 576 - border.
  for (const Case& each :
       {Case{10, 60, false, -49}, Case{540, 60, false, 32}, Case{300, 60, false, 0},
        Case{100, 60, true, 41}, Case{300, 60, true, -208}, Case{300, 0, true, -268}}) {
    const Model model{PaddedRows(3, 10, 1, 1), 60, each.y, VideoStandard::kPal};
    PackDisc disc(model.Packs());
    SubpictureUnit unit = disc.GatherOne();
    const BorderOptions options{.flush = each.flush};
    EXPECT_EQ(ApplyBorder(unit, each.border, options, disc.Context()), each.moved);
    EXPECT_EQ(unit.state.border, each.border);
    EXPECT_TRUE(FfmpegScreen(unit.state.bytes) == model.Moved(each.moved, 0)) << each.y;
    // A second time it is there already, and moves stop at the border.
    EXPECT_EQ(ApplyBorder(unit, each.border, options, disc.Context()), each.moved);
    ASSERT_EQ(MoveVertical(unit, 900, false, disc.Context()), Result::kDone);
    EXPECT_EQ(unit.state.verticalOffset, model.Reach(900, each.border, false));
  }
}

TEST(Position, RefusalsChangeNothing) {
  PackDisc disc(Model{PaddedRows(3, 100, 1, 1), 60, 300, VideoStandard::kPal}.Packs());
  SubpictureUnit unit = disc.GatherOne();
  const SpuState found = unit.state;
  for (const int border : {240, 288, 1000}) {
    EXPECT_EQ(ApplyBorder(unit, border, {}, disc.Context()), std::nullopt);
    EXPECT_EQ(disc.messages.errors.back(),
              "Can't apply border to subpic 7 because it is too high!");
    EXPECT_EQ(unit.state, found);
  }
  unit.highlight.buttons.emplace_back();
  EXPECT_EQ(ApplyBorder(unit, 1000, {}, disc.Context()), 0);
  EXPECT_EQ(disc.messages.errors.size(), 3U);
  EXPECT_EQ(unit.state, found);
}

TEST(Position, BandsAndRepeatedPlacesFollow) {
  SpuDescription description = Subtitle(PaddedRows(4, 20, 0, 0), 60, 4, 90);
  description.sequences[0].commands.push_back(
      ColconCommand({{4, 9, {{60, {}, {}}, {70, {}, {}}}}, {10, 23, {{65, {}, {}}}}}));
  // The same picture again, and another area.
  description.sequences[1].commands.push_back(AreaCommand({60, 89, 4, 23}));
  description.sequences[1].commands.push_back(AreaCommand({1, 2, 3, 4}));
  PackDisc disc(MakeSubpicturePacks(BuildSpu(description), {}));
  SubpictureUnit unit = disc.GatherOne();
  const Bytes found = unit.state.bytes;
  ASSERT_EQ(MoveVertical(unit, 4, false, disc.Context()), Result::kDone);
  ASSERT_EQ(MoveHorizontal(unit, -60, disc.Context()), Result::kDone);
  ASSERT_EQ(MoveVertical(unit, -101, false, disc.Context()), Result::kDone);
  const auto& bands = unit.state.colconTables.at(0).bands;
  EXPECT_EQ(bands[0].topLine, 105);
  EXPECT_EQ(bands[1].bottomLine, 124);
  EXPECT_EQ(bands[0].columns[1].startColumn, 10);
  const auto& again = unit.state.sequences[1].commands;
  EXPECT_EQ(again[1].arguments, (std::array<std::uint16_t, 4>{124, 106, 29, 0}));
  EXPECT_EQ(again[2].arguments, (std::array<std::uint16_t, 4>{4, 3, 2, 1}));
  ASSERT_EQ(MoveVertical(unit, 4, false, disc.Context()), Result::kDone);
  EXPECT_EQ(unit.state.colconTables.at(0).bands[0].topLine, 0);
  ASSERT_EQ(CropBackground(unit, {0, 0}, disc.Context()), Result::kDone);
  EXPECT_EQ(unit.state.colconTables.at(0).bands[1].topLine, 6);
  ASSERT_EQ(MoveHorizontal(unit, 0, disc.Context()), Result::kDone);
  ASSERT_EQ(MoveVertical(unit, 0, false, disc.Context()), Result::kDone);
  EXPECT_EQ(unit.state.colconTables.at(0).bands[0].topLine, 4);
  EXPECT_EQ(unit.state.bytes.size(), found.size());
}

// What must hold after any move, border or crop.
void ExpectSound(const SubpictureUnit& unit, const SpuContext& context) {
  SubpictureUnit reader = MakeUnit(unit.state.bytes);
  ASSERT_EQ(ParseControlSequences(reader, 0, 0, context), Result::kDone);
  EXPECT_EQ(reader.state.area, unit.state.area);
  ASSERT_EQ(DecodeBitmap(reader, context), Result::kDone);
  EXPECT_LT(unit.state.area.ex, kPictureWidth);
  EXPECT_TRUE(std::ranges::equal(ShownPixels(reader), ShownPixels(unit)));
}

TEST(Position, RandomSequencesOfMovesStaySound) {
  std::mt19937 random(31);
  const auto upTo = [&](int most) {
    return static_cast<int>(random() % (1U + static_cast<unsigned>(most)));
  };
  for (unsigned round = 0; round < 100; ++round) {
    const auto standard = round % 2 == 0 ? VideoStandard::kPal : VideoStandard::kNtsc;
    const int height = 1 + upTo(40);
    const Model model{RandomRows(round, 1 + upTo(80), height, 20), upTo(600),
                      upTo(FrameHeight(standard) - height), standard};
    PackDisc disc(model.Packs());
    disc.standard = standard;
    SubpictureUnit unit = disc.GatherOne();
    const SpuContext context = disc.Context();
    const Bytes found = unit.state.bytes;
    const bool crops = round % 4 > 1;
    for (int step = 0; step < 20; ++step) {
      SCOPED_TRACE(testing::Message() << "round " << round << " step " << step);
      const SpuState before = unit.state;
      const int kind = upTo(crops ? 9 : 8);
      if (kind < 4) {
        ASSERT_EQ(MoveVertical(unit, upTo(1200) - 600, kind == 0, context), Result::kDone);
      } else if (kind < 6) {
        ASSERT_EQ(MoveHorizontal(unit, upTo(1500) - 750, context), Result::kDone);
      } else if (kind == 9) {
        ASSERT_EQ(CropBackground(unit, {upTo(3), upTo(3)}, context), Result::kDone);
        EXPECT_EQ(unit.state.horizontalOffset, before.horizontalOffset);
        EXPECT_EQ(unit.state.verticalOffset, before.verticalOffset);
      } else if (!ApplyBorder(unit, upTo(280), {upTo(1) == 0, upTo(1) == 0}, context)) {
        EXPECT_EQ(unit.state, before);
      }
      ASSERT_NO_FATAL_FAILURE(ExpectSound(unit, context));
      if (testing::Test::HasFailure()) return;
    }
    unit.state.border = 0;
    ASSERT_EQ(MoveVertical(unit, 0, false, context), Result::kDone);
    ASSERT_EQ(MoveHorizontal(unit, 0, context), Result::kDone);
    EXPECT_TRUE(crops || unit.state.bytes == found);
  }
}

}  // namespace
}  // namespace quillomar
