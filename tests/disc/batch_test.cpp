// The last modifications on many subpictures, and taking them back.

#include <gtest/gtest.h>

#include "disc/open_disc.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"

namespace quillomar {
namespace {

using test::DiscCopy;
using test::OpenEditor;

class BatchTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = std::make_unique<DiscCopy>("pal");
    editor = std::make_unique<OpenEditor>(disc->TitleVobs());
    for (const UnitPointer& unit : Units()) before.push_back(unit->state);
  }

  UnitList Units() { return (*editor)->Doc().Units(); }

  std::unique_ptr<DiscCopy> disc;
  std::unique_ptr<OpenEditor> editor;
  std::vector<SpuState> before;
};

TEST_F(BatchTest, ReachesTheFilteredListAndIsTakenBack) {
  Editor& program = **editor;
  program.ChooseStream(1);
  program.SetForced(true);
  program.SetColour(kPattern, 7);
  const ApplyAllChoices choices = ChoicesOf(program.Last());
  EXPECT_TRUE(choices.startCommand && choices.colour);
  EXPECT_FALSE(choices.transparency || choices.durations || choices.hide);
  program.ApplyToAll(choices);

  int reached = 0;
  for (const UnitPointer& unit : Units()) {
    const SpuState& old = before.at(static_cast<std::size_t>(unit->number - 1));
    EXPECT_EQ(unit->state.modified, unit->stream == 0);
    if (unit->stream != 0) {
      EXPECT_EQ(unit->state.bytes, old.bytes);
    } else {
      EXPECT_TRUE(IsForced(*unit));
      (void)SelectControlSequence(Document::Unrecorded(unit), 0);
      EXPECT_EQ((*unit->currentColours)[kPattern], 7);
      ++reached;
    }
  }
  EXPECT_GT(reached, 1);

  program.ChooseStream(0);
  program.Run(CommandId::kReloadAll);
  ASSERT_FALSE(editor->questions.empty());
  EXPECT_EQ(editor->questions.back(), "This will undo all your changes... Proceed?");
  EXPECT_FALSE(program.Doc().Modified());
  EXPECT_FALSE(ChoicesOf(program.Last()).colour);
  for (const UnitPointer& unit : Units()) {
    EXPECT_EQ(unit->state.bytes, before.at(static_cast<std::size_t>(unit->number - 1)).bytes);
  }
  // With nothing to take back nothing is asked.
  editor->questions.clear();
  program.Run(CommandId::kReloadAll);
  EXPECT_TRUE(editor->questions.empty());
}

}  // namespace
}  // namespace quillomar
