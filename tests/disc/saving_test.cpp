// Changes of colour and transparency, saved in place.

#include <dvdread/dvd_reader.h>
#include <dvdread/ifo_read.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "disc/disc_test.h"

namespace quillomar {
namespace {

using test::Cli;
using test::FileBytes;
using test::OpenEditor;

class SavedDisc : public test::DiscTest {
 protected:
  [[nodiscard]] Bytes AllBytes() const {
    Bytes all;
    for (const std::string& path : vobs) {
      const Bytes bytes = FileBytes(path);
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
    return all;
  }
};

TEST_P(SavedDisc, NothingChangedWritesNothing) {
  const Bytes before = AllBytes();
  OpenEditor editor(vobs);
  editor->Run(CommandId::kSaveAll);
  EXPECT_EQ(editor.questions, std::vector<std::string>{
                                  "This will save all your changes to file. No undo...\nProceed?"});
  EXPECT_EQ(AllBytes(), before);
  // Colours that stand already mark nothing.
  const UnitPointer unit = editor->Doc().Units().front();
  editor->SetColour(kPattern, (*unit->currentColours)[kPattern]);
  EXPECT_FALSE(editor->Doc().Modified());
}

TEST_P(SavedDisc, IsLeftAloneWhereSomethingElseHasChangedIt) {
  OpenEditor editor(vobs);
  editor->SetColour(kPattern, 5);
  // First the bytes of the pack alone, then the time alone.
  const SpuPack pack = editor->Doc().Units().front()->packs.front();
  const std::string& path = vobs.at(static_cast<std::size_t>(pack.fileIndex));
  const auto time = std::filesystem::last_write_time(path);
  {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(std::int64_t{pack.lbaInFile} * kSectorSize + 60);
    file.put('\x5A');
  }
  std::filesystem::last_write_time(path, time);
  const Bytes before = AllBytes();
  editor->Run(CommandId::kSaveAll);
  EXPECT_EQ(editor.errors.size(), 1U);
  EXPECT_EQ(AllBytes(), before);
  std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
  editor->Run(CommandId::kSaveAll);
  EXPECT_NE(editor.errors.back().find("has been changed by something else"), std::string::npos);
  EXPECT_EQ(AllBytes(), before);
  EXPECT_TRUE(editor->Doc().Modified());
}

TEST_P(SavedDisc, NewColoursShowAndTimesStay) {
  const auto before = test::ReadWithFfmpeg(vobs);
  const auto set = Cli(
      {"set", "--yes", "--colour", "pattern=5", "--colour", "emphasis1=9", "--alpha", "text=11"},
      vobs);
  ASSERT_EQ(set.exitCode, 0) << set.err;
  const auto changed = test::ReadWithFfmpeg(vobs);
  ASSERT_EQ(changed.size(), before.size());
  for (std::size_t i = 0; i < changed.size(); ++i) {
    EXPECT_EQ(changed[i].colours[kPattern], 5) << i;
    EXPECT_EQ(changed[i].colours[kEmphasis1], 9) << i;
    EXPECT_EQ(changed[i].alphas[kPattern], 11) << i;
    EXPECT_EQ(changed[i].colours[kBackground], before[i].colours[kBackground]) << i;
    EXPECT_EQ(changed[i].pts, before[i].pts) << i;
    EXPECT_EQ(changed[i].endMs, before[i].endMs) << i;
    EXPECT_EQ(changed[i].forced, before[i].forced) << i;
  }
  // Saved twice, the same content leaves the same bytes.
  const Bytes changedBytes = AllBytes();
  ASSERT_EQ(Cli({"set", "--yes", "--alpha", "text=11"}, vobs).exitCode, 0);
  EXPECT_EQ(AllBytes(), changedBytes);
}

TEST_P(SavedDisc, OnlyTheChosenSubpictureChanges) {
  const Bytes before = AllBytes();
  ASSERT_EQ(Cli({"set", "--yes", "--numbers", "3", "--colour", "all=2"}, vobs).exitCode, 0);
  const Bytes after = AllBytes();
  OpenEditor editor(vobs);
  const SubpictureUnit& unit = *editor->Doc().Units().at(2);
  EXPECT_EQ(unit.currentColours, (PixelTypeValues{2, 2, 2, 2}));
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] == after[i]) continue;
    const auto lba = static_cast<std::uint32_t>(i / kSectorSize);
    const bool own = std::any_of(unit.packs.begin(), unit.packs.end(),
                                 [lba](const SpuPack& pack) { return pack.lba == lba; });
    ASSERT_TRUE(own) << "byte " << i;
  }
}

TEST_P(SavedDisc, WithoutAnAnswerNothingIsWritten) {
  const Bytes before = AllBytes();
  const auto set = Cli({"set", "--colour", "pattern=5"}, vobs);
  EXPECT_EQ(set.exitCode, 1);
  EXPECT_NE(set.err.find("No undo"), std::string::npos);
  EXPECT_EQ(AllBytes(), before);
}

TEST_P(SavedDisc, ANewClutReachesTheIfoAndItsBackup) {
  const auto clut = Cli({"clut", "--yes", "--pgc", "2", "--entry", "4=#ff0000"}, {disc->Folder()});
  ASSERT_EQ(clut.exitCode, 0) << clut.err;
  EXPECT_EQ(FileBytes(disc->Path("VTS_01_0.IFO")), FileBytes(disc->Path("VTS_01_0.BUP")));

  dvd_reader_t* const reader = DVDOpen(disc->Folder().c_str());
  ASSERT_NE(reader, nullptr);
  ifo_handle_t* const ifo = ifoOpen(reader, 1);
  ASSERT_NE(ifo, nullptr);
  // Red in 8-bit Y, Cr, Cb, as a player reads it.
  EXPECT_EQ(ifo->vts_pgcit->pgci_srp[1].pgc->palette[4], 0x0052F05AU);
  EXPECT_NE(ifo->vts_pgcit->pgci_srp[0].pgc->palette[4], 0x0052F05AU);
  ifoClose(ifo);
  DVDClose(reader);

  const auto list = Cli({"clut", "--pgc", "2"}, {disc->Folder()});
  EXPECT_NE(list.out.find(" 4 #ff0100"), std::string::npos) << list.out;
}

INSTANTIATE_TEST_SUITE_P(Discs, SavedDisc, testing::Values("ntsc", "pal", "split"), test::DiscName);

}  // namespace
}  // namespace quillomar
