// Saves, retimings, IFO writes and restores of an authored disc, killed and failing at each of
// their operations. The whole matrix is tools/kill-matrix; here runs a share of it.

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "disc/open_disc.h"
#include "dvd/vob_name.h"
#include "journal/journal_folder.h"
#include "retime/ifo_update.h"
#include "spu/colour_edit.h"
#include "support/crash_matrix.h"

namespace quillomar::test {
namespace {

constexpr const char* kVob = "/d/VTS_01_1.VOB";
constexpr const char* kIfo = "/d/VTS_01_0.IFO";
constexpr const char* kBackup = "/d/VTS_01_0.BUP";

// Every subpicture and the colours.
void SaveEdits(FileSystem& files) {
  OpenEditor editor(files, kStateFolder, {kVob});
  for (const UnitPointer& unit : editor->Doc().Units()) {
    const int colour = ((*unit->currentColours)[kPattern] + 1) % kClutSize;
    (void)SetColour(Document::Unrecorded(unit), colour, kPattern);
  }
  ClutRecord* const clut = editor->Doc().UnrecordedClut(0, 1);
  if (clut != nullptr) clut->entries[2].y ^= 0x40;
  editor->SaveAll();
}

void RetimeAll(FileSystem& files) {
  OpenEditor editor(files, kStateFolder, {kVob});
  editor->Retime(editor->Doc().Units(), 2);
}

// An address map that needs more sectors than it has.
void GrowIfo(FileSystem& files) {
  Reporter reporter(files);
  IfoFile ifo(files, reporter);
  if (Failed(ifo.Load(kIfo))) return;
  std::vector<std::uint32_t> starts;
  for (std::uint32_t i = 0; i <= 5000; ++i) starts.push_back(i * 7);
  if (Failed(RebuildVobuMap(ifo, {starts, starts}))) return;
  const auto transaction = JournalTransactionSource(files, reporter, kStateFolder).Begin();
  if (!Failed(ifo.Write(*transaction))) (void)transaction->Commit();
}

void TakeBack(FileSystem& files) {
  Reporter reporter(files);
  JournalFolder journals(files, reporter, kStateFolder);
  const auto saved = journals.Saved({kVob});
  if (saved) (void)journals.TakeBack(*saved);
}

DeviceState AuthoredDisc() {
  const DiscCopy disc("ntsc");
  DeviceState state;
  for (const char* const name : {"VTS_01_0.IFO", "VTS_01_0.BUP", "VTS_01_1.VOB"}) {
    state[std::string("/d/") + name] = FileBytes(disc.Path(name));
  }
  return state;
}

struct NamedScenario {
  const char* name;
  CrashScenario scenario;
};

std::vector<NamedScenario> Scenarios() {
  const DeviceState disc = AuthoredDisc();
  DeviceState noBackup = disc;
  noBackup.erase(kBackup);
  CrashFileSystem saved(disc);
  SaveEdits(saved);
  return {{"save", {disc, SaveEdits}},
          {"save, backup created", {noBackup, SaveEdits}},
          {"retiming of all", {disc, RetimeAll}},
          {"growing IFO", {disc, GrowIfo}},
          {"restore of the last save", {saved.Now(), TakeBack, true}}};
}

void RunAll(int points, int mixes) {
  if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
  std::uint32_t seed = 1;
  for (const auto& [name, scenario] : Scenarios()) {
    CrashFileSystem undisturbed(scenario.before);
    scenario.run(undisturbed);
    EXPECT_NE(DiscOf(undisturbed.Now()), DiscOf(scenario.before)) << name;
    const int every = points == 0 ? 1 : std::max(1, undisturbed.Operations() / points);
    const MatrixCounts counts = RunCrashMatrix(scenario, {every, mixes, ++seed, points == 0});
    std::cout << name << ": " << counts.operations << " operations, " << counts.killed
              << " states after a kill, " << counts.killedRestores << " killed recoveries, "
              << counts.faults << " failing operations, " << counts.keptNew
              << " outcomes new, losses " << counts.losses.size() << std::endl;
    EXPECT_EQ(counts.losses, std::vector<std::string>()) << name;
    EXPECT_GT(counts.killed, 0) << name;
  }
}

// A save of the disc that was killed after some of its sectors were written.
DeviceState HalfSaved(const DeviceState& disc) {
  constexpr int kInTheMiddle = 20;
  CrashFileSystem files(disc);
  files.FailAt(kInTheMiddle, CrashFileSystem::Fault::kKilled);
  SaveEdits(files);
  return files.AfterCrash(CrashFileSystem::Unsynced::kKept, 1);
}

class InterruptedSave : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = AuthoredDisc();
    files = std::make_unique<CrashFileSystem>(HalfSaved(disc));
    found = DiscOf(files->Now());
    ASSERT_NE(found, disc);
  }
  // Opens the disc, with answers by turns; gives whether it can be saved.
  bool Open(const std::vector<bool>& answers) {
    std::size_t next = 0;
    OpenEditor editor(*files, kStateFolder, {kVob},
                      [&](const std::string&) { return answers.at(next++); });
    questions = editor.questions;
    EXPECT_EQ(questions.size(), answers.size());
    EXPECT_GT(editor->Doc().Units().size(), 30U);
    return editor->Doc().CanSave();
  }

  DeviceState disc, found;
  std::unique_ptr<CrashFileSystem> files;
  std::vector<std::string> questions;
};

TEST_F(InterruptedSave, IsRestoredWhenTheFilesAreOpened) {
  EXPECT_TRUE(Open({true}));
  EXPECT_NE(questions.front().find(std::string(kVob) + "\n"), std::string::npos);
  EXPECT_EQ(files->Now(), disc);
}

TEST_F(InterruptedSave, MayBeKeptAndWaitsUntilThatIsDecided) {
  EXPECT_FALSE(Open({false, false}));
  EXPECT_EQ(DiscOf(files->Now()), found);
  EXPECT_TRUE(Open({false, true}));
  EXPECT_EQ(files->Now(), found);
  EXPECT_TRUE(Open({}));
}

TEST_F(InterruptedSave, OnTheCommandLine) {
  const auto run = [&](std::vector<std::string> arguments) {
    Session session(*files, kStateFolder);
    std::istringstream in;
    std::ostringstream out, err;
    const int exitCode = RunCli(arguments, session, {in, out, err});
    return CliOutcome{exitCode, out.str(), err.str()};
  };
  const CliOutcome list = run({"list", kVob});
  EXPECT_EQ(list.exitCode, kCliDone);
  EXPECT_NE(list.err.find("quillomar-cli recover"), std::string::npos);
  EXPECT_EQ(run({"set", "--yes", "--hide", kVob}).exitCode, kCliRefused);
  EXPECT_EQ(DiscOf(files->Now()), found);
  EXPECT_EQ(run({"recover", kVob}).exitCode, kCliDone);
  EXPECT_EQ(files->Now(), disc);
  EXPECT_EQ(run({"recover", kVob}).out, "There is nothing to restore.\n");
}

TEST(LastSavedState, IsRestoredAndReadAgain) {
  if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
  const DeviceState disc = AuthoredDisc();
  CrashFileSystem files(disc);
  SaveEdits(files);
  ASSERT_NE(DiscOf(files.Now()), disc);
  {
    OpenEditor editor(files, kStateFolder, {kVob});
    const Bytes saved = editor->Doc().Units().front()->state.bytes;
    editor->Run(CommandId::kRestoreLastSaved);
    EXPECT_NE(editor->Doc().Units().front()->state.bytes, saved);
    EXPECT_FALSE(editor->Doc().Modified());
    EXPECT_TRUE(editor->Doc().CanSave());
  }
  EXPECT_EQ(files.Now(), disc);
}

// What is known of the disc goes back with its bytes: the next attempt does all of it.
TEST(RetimingThatFails, CanBeTriedAgain) {
  if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
  CrashFileSystem undisturbed(AuthoredDisc());
  RetimeAll(undisturbed);
  for (const int operation : {15, 40, undisturbed.Operations() - 12}) {
    CrashFileSystem files(AuthoredDisc());
    files.FailAt(operation, CrashFileSystem::Fault::kError);
    {
      OpenEditor editor(files, kStateFolder, {kVob});
      editor->SetColour(kPattern, 9);
      editor->Retime(editor->Doc().Units(), 2);
      EXPECT_EQ(DiscOf(files.Now()), AuthoredDisc()) << operation;
      EXPECT_TRUE(editor->Enabled(FindCommandById(CommandId::kUndo))) << operation;
      editor->Retime(editor->Doc().Units(), 2);
    }
    EXPECT_EQ(DiscOf(files.Now()), DiscOf(undisturbed.Now())) << operation;
  }
}

TEST(DiscCrashes, LeaveOldOrNewBytes) {
  RunAll(3, 1);
}

TEST(DiscCrashes, DISABLED_AllOfThem) {
  RunAll(0, 6);
}

}  // namespace
}  // namespace quillomar::test
