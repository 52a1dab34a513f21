// Edits taken back and done again.

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "disc/open_disc.h"
#include "spu/parse.h"

namespace quillomar {
namespace {

using test::DiscCopy;
using test::OpenEditor;

// All that a save would write.
struct Unsaved {
  std::vector<Bytes> units;
  std::vector<bool> modified;
  std::vector<YCrCbClut> cluts;
  friend bool operator==(const Unsaved&, const Unsaved&) = default;
};

class UndoTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = std::make_unique<DiscCopy>("pal");
    editor = std::make_unique<OpenEditor>(disc->TitleVobs());
    start = Now();
  }

  Unsaved Now() {
    Unsaved now;
    for (const UnitPointer& unit : (*editor)->Doc().Units()) {
      now.units.push_back(unit->state.bytes);
      now.modified.push_back(unit->state.modified);
    }
    for (const ClutRecord& clut : (*editor)->Doc().Cells().cluts) now.cluts.push_back(clut.entries);
    return now;
  }

  std::string Offered(CommandId id) { return (*editor)->MenuText(FindCommandById(id)); }
  bool CanUndo() { return (*editor)->Enabled(FindCommandById(CommandId::kUndo)); }
  bool CanRedo() { return (*editor)->Enabled(FindCommandById(CommandId::kRedo)); }

  // One action of a user, at random.
  void Act(std::mt19937& random) {
    const auto upTo = [&random](int most) {
      return std::uniform_int_distribution<int>(0, most)(random);
    };
    Editor& program = **editor;
    program.GoTo(upTo(program.CurrentView().count));
    const std::vector<std::function<void()>> actions = {
        [&] { program.SetColour(upTo(3), upTo(15)); },
        [&] { program.SetTransparency(upTo(15), upTo(5)); },
        [&] { program.MoveVertically(upTo(80) - 40); },
        [&] { program.MoveHorizontally(upTo(60) - 30); },
        [&] { program.SetBorder(upTo(60)); },
        [&] { program.FlushToBorder(upTo(1) != 0); },
        [&] { program.SetDuration(upTo(4000)); },
        [&] { program.MakeInfinite(); },
        [&] { program.SetForced(upTo(1) != 0); },
        [&] { program.AddFade(); },
        [&] { program.RemoveFade(); },
        [&] { program.CropCurrent(); },
        [&] { program.HideCurrent(); },
        [&] { program.ApplyLast(); },
        [&] { program.ReloadCurrent(); },
        [&] { program.ReloadAll(); },
        [&] { program.ApplyToAll(ChoicesOf(program.Last())); },
        [&] { program.ChooseSequence(upTo(2)); },
    };
    actions.at(static_cast<std::size_t>(upTo(static_cast<int>(actions.size()) - 1)))();
  }

  std::unique_ptr<DiscCopy> disc;
  std::unique_ptr<OpenEditor> editor;
  Unsaved start;
};

TEST_F(UndoTest, AllTheWayBackAndForthWhateverWasDone) {
  constexpr unsigned kSeed = 20261121;
  constexpr int kActions = 120;
  std::mt19937 random(kSeed);
  std::vector<Unsaved> states = {start};
  for (int i = 0; i < kActions; ++i) {
    const Unsaved before = Now();
    Act(random);
    if (Now() != before) states.push_back(Now());
  }
  ASSERT_GT(states.size(), 40U);
  // States that differ by a border or offset alone are steps too.
  const auto walk = [&](CommandId id, auto first, auto last) {
    for (auto wanted = first; wanted != last; ++wanted) {
      while (Now() != *wanted && (*editor)->Enabled(FindCommandById(id))) (*editor)->Run(id);
      ASSERT_TRUE(Now() == *wanted);
    }
  };
  const auto asked = editor->questions;
  walk(CommandId::kUndo, states.rbegin(), states.rend());
  EXPECT_FALSE((*editor)->Doc().Modified());
  EXPECT_TRUE((*editor)->MayClose() && editor->questions == asked);
  walk(CommandId::kRedo, states.begin(), states.end());
}

TEST_F(UndoTest, ABatchIsOneStepAndSoIsAHold) {
  Editor& program = **editor;
  program.ChooseStream(1);
  program.SetForced(true);
  const ApplyAllChoices choices = ChoicesOf(program.Last());
  EXPECT_TRUE(choices.startCommand && !choices.colour && !choices.durations);
  program.ApplyToAll(choices);
  const Unsaved applied = Now();
  // It reaches what the list shows.
  for (const UnitPointer& unit : program.Doc().Units()) {
    EXPECT_TRUE(unit->stream == 0 ? IsForced(*unit) : !unit->state.modified) << unit->number;
  }
  EXPECT_NE(Offered(CommandId::kUndo).find("last modifications ("), std::string::npos);
  program.Run(CommandId::kUndo);
  EXPECT_EQ(Offered(CommandId::kUndo), "Undo start command (subpic 1) \t(Alt-Backspace)");
  program.Run(CommandId::kUndo);
  EXPECT_TRUE(Now() == start);
  EXPECT_FALSE(ChoicesOf(program.Last()).startCommand);
  program.Run(CommandId::kRedo);
  program.Run(CommandId::kRedo);
  EXPECT_TRUE(Now() == applied);

  program.ChooseStream(0);
  program.Run(CommandId::kReloadAll);
  EXPECT_EQ(editor->questions.back(), "This will undo all your changes... Proceed?");
  EXPECT_TRUE(Now() == start);
  program.Run(CommandId::kReloadAll);
  EXPECT_EQ(editor->questions.size(), 1U) << "there was nothing to take back";
  program.Run(CommandId::kUndo);
  EXPECT_TRUE(Now() == applied);

  program.GoTo(2);
  program.BeginHold();
  for (const int alpha : {12, 7, 3}) program.SetTransparency(alpha, 4);
  program.EndHold();
  program.SetTransparency(5, 4);
  // What is taken back is shown.
  program.GoTo(0);
  program.Run(CommandId::kUndo);
  EXPECT_EQ(program.CurrentView().index, 2);
  EXPECT_EQ(program.CurrentView().textAlpha, 3);
  program.Run(CommandId::kUndo);
  EXPECT_TRUE(Now() == applied);
  // A new edit ends what could be done again.
  program.SetColour(1, 9);
  EXPECT_FALSE(CanRedo());
}

TEST_F(UndoTest, RefusedAndIdleEditsAreNoSteps) {
  Editor& program = **editor;
  program.RemoveFade();
  program.SetColour(1, *program.CurrentView().swatches[1].clutEntry);
  program.ReloadCurrent();
  EXPECT_FALSE(CanUndo());
  EXPECT_EQ(Offered(CommandId::kUndo), "Undo \t(Alt-Backspace)");
}

TEST_F(UndoTest, EndsWhereTheDiscHasChanged) {
  Editor& program = **editor;
  program.SetColour(1, 9);
  program.Run(CommandId::kSaveAll);
  EXPECT_FALSE(CanUndo());
  program.SetColour(1, 8);
  program.Run(CommandId::kUndo);
  EXPECT_FALSE(program.Doc().Modified());
  program.Retime({program.Doc().Units().front()}, 0.2);
  EXPECT_FALSE(CanRedo());
  program.SetColour(1, 7);
  program.OpenFiles(disc->TitleVobs(), false);
  EXPECT_FALSE(CanUndo());
}

TEST(EditHistoryTest, KeepsToItsMemory) {
  constexpr std::size_t kUnits = 8;
  CellMap cells;
  EditHistory history(cells, 100'000);
  UnitList units;
  for (std::size_t i = 0; i < kUnits; ++i) {
    auto unit = std::make_shared<SubpictureUnit>();
    unit->state.bytes.resize(15'000);
    units.push_back(unit);
  }
  const auto edit = [&](std::size_t count, std::uint8_t value) {
    history.Begin("edit", {});
    for (std::size_t i = 0; i < count; ++i) history.Open(units[i]).state.bytes[0] = value;
    history.Close();
  };
  for (std::uint8_t value = 1; value < 50; ++value) edit(1, value);
  EXPECT_LE(history.Bytes(), 100'000U);
  cells.cluts.resize(1);
  history.Begin("CLUT", {});
  history.OpenClut(0).entries[3] = {1, 2, 3};
  history.Close();
  LastModifications last;
  EXPECT_EQ(history.Undo(last)->Label(), "CLUT");
  EXPECT_FALSE(cells.cluts[0].Modified());
  int steps = 0;
  while (history.Undo(last) != nullptr) ++steps;
  EXPECT_GE(steps, 4);
  EXPECT_EQ(units[0]->state.bytes[0], 49 - steps);
  // What is too much to keep at all leaves nothing that could be taken back wrongly.
  edit(kUnits, 77);
  EXPECT_EQ(history.ToUndo(), nullptr);
  EXPECT_EQ(history.Bytes(), 0U);
}

}  // namespace
}  // namespace quillomar
