// Retiming through the whole program, on authored discs.

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <random>

#include "check_retimed/checkers.h"
#include "disc/ffmpeg_subtitles.h"
#include "disc/open_disc.h"
#include "retime/timeline.h"

namespace quillomar::test {
namespace {

using namespace check;

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

// Retimings drawn at random from one seed: of one unit, of a part of the list, of one stream or of
// all, by 0.04 s to 30 s either way, short ones as often as long ones.
class RandomRetimings : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = std::make_unique<DiscCopy>(GetParam());
    vobs = disc->TitleVobs();
    untouched = std::make_unique<DiscModel>(disc->Folder());
    editor = std::make_unique<OpenEditor>(vobs);
  }

  Document& Doc() { return (*editor)->Doc(); }
  static std::vector<std::uint32_t> TimesOf(const UnitList& units) {
    std::vector<std::uint32_t> times;
    for (const UnitPointer& unit : units) times.push_back(unit->state.pts);
    return times;
  }

  static int Number(const char* variable, int otherwise) {
    const auto text = EnvironmentVariable(variable);
    return text ? std::stoi(*text) : otherwise;
  }
  std::size_t Below(std::size_t count) { return random_() % count; }

  double Seconds() {
    const double seconds =
        0.04 * std::exp(std::log(750.0) * static_cast<double>(Below(1001)) / 1000);
    return Below(2) == 0 ? seconds : -seconds;
  }

  UnitList Some() {
    const UnitList units = Doc().Units();
    const std::size_t first = Below(units.size());
    const std::size_t kind = Below(4);
    if (kind < 2) return {units[first]};
    if (kind == 2)
      return {units.begin() + static_cast<std::ptrdiff_t>(Below(first + 1)),
              units.begin() + static_cast<std::ptrdiff_t>(first + 1)};
    UnitList chosen;
    const int stream = units[first]->stream;
    for (const UnitPointer& unit : units) {
      if (stream == 0 || unit->stream == stream) chosen.push_back(unit);
    }
    return chosen;
  }

  // What must hold after any retiming.
  void Retime(const UnitList& selection, double seconds) {
    SCOPED_TRACE(testing::Message() << selection.size() << " units from "
                                    << selection.front()->number << " by " << seconds);
    const std::vector<std::uint32_t> times = TimesOf(selection);
    const auto delta = DeltaTicks(seconds, Doc().Standard());
    editor->errors.clear();
    (*editor)->Retime(selection, seconds);
    std::size_t stayed = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
      const std::uint32_t now = selection[i]->state.pts;
      if (now == times[i]) ++stayed;
      EXPECT_TRUE(now == times[i] || now == times[i] + delta);
    }
    EXPECT_EQ(stayed, editor->errors.size());
    moved_ += times.size() - stayed;
    refused_ += stayed;
    const DiscModel now(disc->Folder());
    EXPECT_EQ(CheckNavigation(now, *untouched), Faults());
    EXPECT_EQ(CheckMux(now, *untouched), Faults());
    ExpectRescanFindsTheSame(Doc(), vobs);
  }

  void ThereAndBack(double seconds) {
    const UnitList units = Doc().Units();
    const std::vector<std::uint32_t> times = TimesOf(units);
    const auto before = Pictures(vobs);
    Retime(units, seconds);
    if (!editor->errors.empty()) return;
    const auto after = Pictures(vobs);
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) {
      EXPECT_EQ(after[i].pts, before[i].pts + DeltaTicks(seconds, Doc().Standard()));
      EXPECT_EQ(after[i].types, before[i].types);
      EXPECT_EQ(after[i].endMs, before[i].endMs);
    }
    Retime(Doc().Units(), -seconds);
    EXPECT_EQ(TimesOf(units), times);
    ++returned_;
  }

  std::unique_ptr<DiscCopy> disc;
  std::vector<std::string> vobs;
  std::unique_ptr<DiscModel> untouched;
  std::unique_ptr<OpenEditor> editor;
  std::mt19937 random_;
  std::size_t moved_ = 0, refused_ = 0, returned_ = 0;
};

TEST_P(RandomRetimings, LeaveASoundDisc) {
  constexpr int kRounds = 6;
  const int sequences = Number("QUILLOMAR_RETIMINGS", kRounds) / kRounds;
  const int played = PlayWithDvdnav(disc->Folder());
  for (int sequence = 0; sequence < sequences && !HasFailure(); ++sequence) {
    const int seed = Number("QUILLOMAR_SEED", 2007) + sequence;
    random_.seed(static_cast<unsigned>(seed));
    if (sequence > 0) SetUp();
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", round " << round);
      if (round == 0) ThereAndBack(sequence == 0 ? 2 : Seconds());
      Retime(Some(), Seconds());
    }
    EXPECT_EQ(PlayWithDvdnav(disc->Folder()), played);
    // The warning comes once; then there is only the question about crowded VOBUs.
    EXPECT_EQ(std::count(editor->questions.begin(), editor->questions.end(),
                         "There is NO undo for this\nThe VOB file will be modified. Proceed?"),
              1);
  }
  EXPECT_TRUE(HasFailure() || returned_ > 0);
  std::cout << moved_ << " moved, " << refused_ << " refused, " << returned_ << " there and back\n";
}

INSTANTIATE_TEST_SUITE_P(Discs, RandomRetimings, testing::Values("ntsc", "split", "pal", "short"));

}  // namespace
}  // namespace quillomar::test
