// What a retiming computes, refuses and leaves alone.

#include <gtest/gtest.h>

#include <fstream>

#include "base/format.h"
#include "check_retimed/checkers.h"
#include "disc/open_disc.h"
#include "dvd/big_endian.h"
#include "dvd/ifo_layout.h"
#include "dvd/nav_pack.h"
#include "retime/clock.h"
#include "retime/ifo_update.h"
#include "retime/pack_move.h"
#include "retime/timeline.h"
#include "spu/colour_edit.h"
#include "support/message_collector.h"

namespace quillomar::test {
namespace {

using namespace check;

TEST(RetimeRules, DeltasAreWholeFrames) {
  EXPECT_EQ(DeltaTicks(0.5, VideoStandard::kNtsc), 45045);
  EXPECT_EQ(DeltaTicks(0.7, VideoStandard::kNtsc), 63063);  // 21 frames, not 20.99
  EXPECT_EQ(DeltaTicks(-0.01, VideoStandard::kNtsc), 0);
  EXPECT_EQ(DeltaTicks(-0.1, VideoStandard::kPal), -7200);
}

TEST(RetimeRules, TheTargetCoversTheNewTimeWithinItsStretch) {
  std::vector<VobuEntry> vobus;
  for (std::uint32_t i = 0; i < 8; ++i) {
    const std::uint32_t start = i % 4 * 100;  // the clock starts again at VOBU 4
    vobus.push_back({i * 50, i * 50, start, start + 100, 10, 50, {}});
  }
  const Timeline timeline(vobus);
  EXPECT_EQ(timeline.Target(0, 250, true), 2U);
  EXPECT_EQ(timeline.Target(0, 200, true), 1U);  // the one before the first at or beyond it
  EXPECT_EQ(timeline.Target(3, 150, false), 1U);
  EXPECT_EQ(timeline.Target(3, 0, false), 0U);
  EXPECT_EQ(timeline.Target(6, 10, false), 4U);
  EXPECT_EQ(timeline.Target(0, 400, true), 3U);
  EXPECT_EQ(timeline.Target(0, 401, true), std::nullopt);
  EXPECT_EQ(timeline.Target(5, -1, false), std::nullopt);

  std::vector<std::size_t> tried;
  const auto none = [&](std::size_t vobu) {
    tried.push_back(vobu);
    return false;
  };
  EXPECT_FALSE(ChooseDestination(timeline, 0, 3, vobus.size(), none));
  EXPECT_EQ(tried, (std::vector<std::size_t>{3, 2, 1}));  // VOBU 4 is behind the restart
  EXPECT_EQ(ChooseDestination(timeline, 2, 3, vobus.size(), none)->vobu, 2U);
}

TEST(RetimeRules, SectorsMapToTheNextStart) {
  const std::vector<std::uint32_t> before = {0, 100, 200, 300};
  const std::vector<std::uint32_t> now = {0, 101, 199, 300};
  const StartLists starts{before, now};
  const auto mapped = [&](std::size_t count, std::int64_t sector, std::int64_t above) {
    const MappedSector found = MapSector(starts, count, sector, above);
    return std::pair(found.sector, found.exact);
  };
  EXPECT_EQ(mapped(3, 100, -1), std::pair(101U, true));
  EXPECT_EQ(mapped(3, 150, -1), std::pair(199U, false));
  EXPECT_EQ(mapped(3, 250, -1), std::pair(199U, false));  // none: the last of those that count
  EXPECT_EQ(mapped(4, 100, 101), std::pair(199U, false));
  EXPECT_EQ(mapped(4, 300, 199), std::pair(300U, true));
}

// An IFO of three sectors: header, address map, a table behind it.
TEST(RetimeRules, TheAddressMapGrowsAndShrinksBySectors) {
  MessageCollector messages;
  Bytes file(3 * kSectorSize, 0);
  PutInt(file, kIfoEndSectorOffset, 2);
  PutInt(file, kIfoTitleVobusOffset, 1);
  PutInt(file, kIfoTitleCellsOffset, 2);
  PutInt(file, kSectorSize, 4 * 10 + 3);
  PutInt(file, 2 * kSectorSize + kTableEndOffset, 99);
  PutInt(file, 2 * kSectorSize + 40, 0x12345678);
  messages.files.Put("/VTS_01_0.IFO", file);
  IfoFile ifo(messages.files, messages.reporter);
  ASSERT_EQ(ifo.Load("/VTS_01_0.IFO"), Result::kDone);
  for (const std::uint32_t vobus : {600U, 10U}) {
    const std::size_t sectors = vobus == 600 ? 2 : 1;
    std::vector<std::uint32_t> starts;
    for (std::uint32_t i = 0; i <= vobus; ++i) starts.push_back(i * 7);
    ASSERT_EQ(RebuildVobuMap(ifo, {starts, starts}), Result::kDone);
    Bytes expected = file;
    expected.insert(expected.begin() + 2 * kSectorSize, (sectors - 1) * kSectorSize, 0);
    PutInt(expected, kIfoEndSectorOffset, static_cast<std::uint32_t>(sectors + 1));
    PutInt(expected, kIfoTitleCellsOffset, static_cast<std::uint32_t>(sectors + 1));
    PutInt(expected, kSectorSize, vobus * 4 + 3);
    for (std::uint32_t i = 0; i < vobus; ++i) PutInt(expected, kSectorSize + 4 + 4 * i, i * 7);
    const auto image = ifo.Image().first(ifo.SizeKib() * kKib);
    EXPECT_EQ(Bytes(image.begin(), image.end()), expected);
  }
}

class RetimingRefused : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = std::make_unique<DiscCopy>("ntsc");
    Open();
  }

  void Open() {
    editor = std::make_unique<OpenEditor>(disc->TitleVobs());
    before = FileBytes(disc->TitleVobs().front());
  }
  // Opens the disc anew with another title domain.
  void Overwrite(const Bytes& vob) {
    editor.reset();
    std::ofstream(disc->TitleVobs().front(), std::ios::binary)
        .write(reinterpret_cast<const char*>(vob.data()), static_cast<std::streamsize>(vob.size()));
    Open();
  }
  // Answers confirmations with OK and questions with no.
  void AnswerNo() {
    const auto askYesNo = [this](const std::string& question) {
      editor->questions.push_back(question);
      return false;
    };
    const auto askOkCancel = [](const std::string&) { return true; };
    (*editor)->Context().reporter.InstallHooks({{}, askYesNo, askOkCancel});
  }
  UnitList Units() { return (*editor)->Doc().Units(); }
  bool Untouched() { return FileBytes(disc->TitleVobs().front()) == before; }

  std::unique_ptr<DiscCopy> disc;
  std::unique_ptr<OpenEditor> editor;
  Bytes before;
};

TEST_F(RetimingRefused, WhereThereIsNoPlace) {
  (*editor)->Retime({Units()[3]}, 1000);
  EXPECT_EQ(editor->errors, std::vector<std::string>{
                                "Can't find an empty slot for subpic 4! It won't be moved....\n"});
  EXPECT_TRUE(Untouched());
}

// All packs of a VOBU follow each other at the multiplex rate; the time left over lies at its end.
TEST_F(RetimingRefused, WhereTheMultiplexLeavesNoGap) {
  Bytes dense = before;
  for (const VobuEntry& vobu : (*editor)->Doc().Results().vobus) {
    const auto pack = [&](std::uint32_t index) {
      return std::span(dense).subspan((vobu.startLba + index) * kSectorSize).first<kSectorSize>();
    };
    for (std::uint32_t i = 1; i < vobu.length; ++i) {
      PutClockReference(pack(i), PacksLater(GetClockReference(pack(i - 1)), 1));
    }
  }
  Overwrite(dense);
  (*editor)->Retime(Units(), 2);
  EXPECT_EQ(
      std::count(editor->errors.begin(), editor->errors.end(), "Couldn't locate an empty slot!"),
      static_cast<std::ptrdiff_t>(Units().size()));
  EXPECT_TRUE(Untouched());
}

TEST_F(RetimingRefused, ByAUnitWithButtons) {
  const UnitList units = Units();
  Document::Unrecorded(units.back()).highlight.buttons.resize(1);
  (*editor)->Retime(units, 1);
  EXPECT_EQ((*editor)->Context().reporter.StatusText(), "Updating IFO");
  EXPECT_TRUE(Untouched());
}

TEST_F(RetimingRefused, ByTheUserWhereAVobuHoldsSeveralUnits) {
  const UnitList units = Units();
  const auto other = std::find_if(units.begin() + 1, units.end(), [&](const UnitPointer& unit) {
    return unit->stream == units.front()->stream;
  });
  Document::Unrecorded(*other).packs.front().lba = units.front()->packs.back().lba + 1;
  AnswerNo();
  (*editor)->Retime({units.front()}, 1);
  EXPECT_EQ(editor->questions,
            std::vector<std::string>{
                "The SPU stream has multiple SPUs in the same VOBU\n"
                "Re-timing might cause some SPUs to appear in the wrong order. Do you want to "
                "continue?"});
  EXPECT_TRUE(Untouched());
}

TEST_F(RetimingRefused, AcrossInterleavedUnitsButNotInsideAVobu) {
  const std::uint32_t nav = (*editor)->Doc().Results().vobus[1].startLba;
  Bytes interleaved = before;
  PutShort(interleaved, nav * kSectorSize + kNavCategoryOffset, 0x8000);
  Overwrite(interleaved);
  (*editor)->Retime({Units().front()}, 5);
  EXPECT_EQ(editor->errors,
            std::vector<std::string>{
                "This timing change for spu 1 would require moving the subpic pack.\n"
                "Interleaved video units (ILVUs) were found in the VOB file. I can't move the "
                "pack"});
  EXPECT_TRUE(Untouched());
  const std::uint32_t time = Units().front()->state.pts;
  (*editor)->Retime({Units().front()}, 0.35);
  EXPECT_EQ(Units().front()->state.pts, time + 30030);
  OpenEditor again(disc->TitleVobs());
  EXPECT_EQ(again->Doc().Units().front()->state.pts, time + 30030);
}

// Pointers that were wrong before: those between VOBUs stay, cells are led to a VOBU.
TEST_F(RetimingRefused, ForPointersThatWereWrongBefore) {
  const std::uint32_t nav = (*editor)->Doc().Results().vobus[9].startLba;
  Bytes wrong = before;
  const std::size_t pointer = std::size_t{nav} * kSectorSize + kNextVobuOffset;
  AddInt(wrong, pointer, 1);
  const std::uint32_t distance = GetInt(wrong, pointer);
  Overwrite(wrong);
  IfoFile& ifo = (*editor)->Doc().Ifo();
  const std::size_t cell = *ifo.CellPlayback(*ifo.ProgramChain(0, 1), 2);
  for (const std::size_t field : {kCellFirstVobuOffset, kCellLastVobuOffset})
    ifo.AddInt(cell, field, 1);
  ifo.AddInt(cell, kCellLastVobuEndOffset, 1);

  (*editor)->Context().reporter.OpenLog(disc->Path("log"));
  (*editor)->Retime({Units()[2]}, 5);
  (*editor)->Context().reporter.CloseLog();
  const Bytes log = FileBytes(disc->Path("log"));
  const std::string lines(log.begin(), log.end());
  const auto now = (*editor)->Doc().Results().vobus[9].currentLba;
  for (const std::string& line :
       {Format("VOBU SRI offset corrupted at LBA %u", now),
        std::string("PGC 1 - Cell 2, Original entry sector didn't point to a navpack. Fixed"),
        std::string(
            "PGC 1 - Cell 2, Original last VOBU start LBA didn't point to a navpack. Fixed"),
        std::string(
            "PGC 1 - Cell 2, Original last VOBU end LBA + 1 didn't point to a navpack. Fixed")}) {
    EXPECT_NE(lines.find(line + "\n"), std::string::npos) << line;
  }
  EXPECT_EQ(GetInt(FileBytes(disc->TitleVobs().front()),
                   std::size_t{now} * kSectorSize + kNextVobuOffset),
            distance);
}

TEST_F(RetimingRefused, NothingOfUnsavedEdits) {
  const DiscModel untouched(disc->Folder());
  const UnitPointer unit = Units()[5];
  const int colour = ((*unit->currentColours)[kPattern] + 1) % 16;
  ASSERT_EQ(SetColour(Document::Unrecorded(unit), colour, kPattern), Result::kDone);
  const Bytes edited = unit->state.bytes;
  (*editor)->Retime(Units(), 3);
  EXPECT_EQ(CheckMux(DiscModel(disc->Folder()), untouched), Faults());
  EXPECT_TRUE(unit->state.modified);
  EXPECT_EQ(unit->state.bytes, edited);
  const std::uint32_t time = unit->state.pts;
  (*editor)->Run(CommandId::kSaveAll);
  OpenEditor again(disc->TitleVobs());
  const UnitPointer saved = again->Doc().Units()[static_cast<std::size_t>(unit->number) - 1];
  EXPECT_EQ(saved->state.bytes, edited);
  EXPECT_EQ(saved->state.pts, time);
}

}  // namespace
}  // namespace quillomar::test
