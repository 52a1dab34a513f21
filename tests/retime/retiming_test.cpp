// Retiming through the whole program, on authored discs.

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "disc/ffmpeg_subtitles.h"
#include "disc/open_disc.h"
#include "retime/checkers.h"

namespace quillomar::test {
namespace {

using UnitFacts = std::vector<std::int64_t>;

// What a rescan must find as it is held.
UnitFacts FactsOf(const SubpictureUnit& unit) {
  UnitFacts facts = {unit.number,     unit.numberInStream, unit.stream,
                     unit.vcid.vobId, unit.vcid.cellId,    unit.clut.value_or(-1),
                     unit.globalTime, unit.ptsAsRead,      unit.state.pts,
                     unit.navLba,     unit.state.freeRoom, unit.state.modified};
  for (const SpuPack& pack : unit.packs) {
    facts.insert(facts.end(), {pack.lba, pack.lbaInFile, pack.fileIndex});
  }
  facts.insert(facts.end(), unit.firstHeader.begin(), unit.firstHeader.end());
  return facts;
}

UnitFacts FactsOf(const VobuEntry& vobu) {
  UnitFacts facts = {vobu.startLba, vobu.currentLba, vobu.startTime,
                     vobu.endTime,  vobu.freeSlots,  vobu.length};
  facts.insert(facts.end(), vobu.searchInfo.begin(), vobu.searchInfo.end());
  return facts;
}

void ExpectRescanFindsTheSame(Document& held, const std::vector<std::string>& vobs) {
  OpenEditor rescan(vobs);
  Document& fresh = rescan->Doc();
  const UnitList units = held.Units();
  const UnitList found = fresh.Units();
  ASSERT_EQ(found.size(), units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    EXPECT_EQ(FactsOf(*units[i]), FactsOf(*found[i])) << "unit " << i + 1;
    EXPECT_EQ(units[i]->state.bytes, found[i]->state.bytes) << "unit " << i + 1;
  }
  const ScanResults& was = held.Results();
  const ScanResults& is = fresh.Results();
  ASSERT_EQ(is.vobus.size(), was.vobus.size());
  for (std::size_t i = 0; i < is.vobus.size(); ++i) {
    EXPECT_EQ(FactsOf(was.vobus[i]), FactsOf(is.vobus[i])) << "VOBU " << i;
  }
  EXPECT_EQ(was.scannedStarts, is.scannedStarts);
  EXPECT_EQ(was.currentStarts, is.currentStarts);
  EXPECT_EQ(was.timeRestarts, is.timeRestarts);
  EXPECT_EQ(was.videoLba, is.videoLba);
}

// All pictures in the order of stream and time.
std::vector<FfmpegSubtitle> Pictures(const std::vector<std::string>& vobs) {
  std::vector<FfmpegSubtitle> list = ReadWithFfmpeg(vobs);
  std::stable_sort(list.begin(), list.end(), [](const auto& a, const auto& b) {
    return std::tie(a.streamId, a.types) < std::tie(b.streamId, b.types);
  });
  return list;
}

class Retiming : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = std::make_unique<DiscCopy>(GetParam());
    vobs = disc->TitleVobs();
    untouched = std::make_unique<DiscModel>(disc->Folder());
    editor = std::make_unique<OpenEditor>(vobs);
  }

  Document& Doc() { return (*editor)->Doc(); }

  void ExpectSoundDisc() {
    const DiscModel now(disc->Folder());
    EXPECT_EQ(CheckNavigation(now, *untouched), Faults());
    EXPECT_EQ(CheckMux(now, *untouched), Faults());
    ExpectRescanFindsTheSame(Doc(), vobs);
  }

  std::unique_ptr<DiscCopy> disc;
  std::vector<std::string> vobs;
  std::unique_ptr<DiscModel> untouched;
  std::unique_ptr<OpenEditor> editor;
};

TEST_P(Retiming, AllUnitsThereAndBack) {
  const auto before = Pictures(vobs);
  const UnitList units = Doc().Units();
  std::vector<std::uint32_t> times;
  for (const UnitPointer& unit : units) times.push_back(unit->state.pts);
  const std::int64_t delta = 2 * TicksPerSecond(Doc().Standard());
  const int played = PlayWithDvdnav(disc->Folder());

  (*editor)->Retime(Doc().Units(), 2);
  EXPECT_EQ(editor->errors, std::vector<std::string>());
  ExpectSoundDisc();
  EXPECT_EQ(PlayWithDvdnav(disc->Folder()), played);
  const auto after = Pictures(vobs);
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t i = 0; i < after.size(); ++i) {
    EXPECT_EQ(after[i].pts, before[i].pts + delta);
    EXPECT_EQ(after[i].types, before[i].types);
    EXPECT_EQ(after[i].endMs, before[i].endMs);
  }

  (*editor)->Retime(Doc().Units(), -2);
  ExpectSoundDisc();
  for (std::size_t i = 0; i < units.size(); ++i) EXPECT_EQ(units[i]->state.pts, times[i]);
  // The warning comes once; then there is only the question about crowded VOBUs.
  EXPECT_EQ(std::count(editor->questions.begin(), editor->questions.end(),
                       "There is NO undo for this\nThe VOB file will be modified. Proceed?"),
            1);
}

TEST_P(Retiming, AnySequenceOfRetimings) {
  const int played = PlayWithDvdnav(disc->Folder());
  std::mt19937 random(20'071'106);
  const auto below = [&](std::size_t count) { return random() % count; };
  for (int round = 0; round < 8; ++round) {
    const UnitList units = Doc().Units();
    const std::size_t first = below(units.size());
    const std::size_t count = below(3) == 0 ? units.size() - first : 1;
    const double seconds = static_cast<double>(below(3000) + 4) / 100;
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << count << " units from " << first
                                    << " by " << seconds);
    const UnitList selection(units.begin() + static_cast<std::ptrdiff_t>(first),
                             units.begin() + static_cast<std::ptrdiff_t>(first + count));
    (*editor)->Retime(selection, below(2) == 0 ? seconds : -seconds);
    ExpectSoundDisc();
    if (HasFailure()) break;
  }
  EXPECT_EQ(PlayWithDvdnav(disc->Folder()), played);
}

INSTANTIATE_TEST_SUITE_P(Discs, Retiming, testing::Values("ntsc", "pal", "split"));

}  // namespace
}  // namespace quillomar::test
