// Opening a disc again from what an earlier scan found.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "disc/open_disc.h"
#include "spu/colour_edit.h"

namespace quillomar {
namespace {

using test::DiscCopy;
using test::FileBytes;

class FastOpenTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = std::make_unique<DiscCopy>(GetParam());
    vobs = std::string(GetParam()) == "menu" ? disc->MenuVobs() : disc->TitleVobs();
    session.dataFolder = disc->Folder();
    session.logPath = disc->Path("log");
    editor.ReadRecentFiles();
  }

  // The program's own description of all it found.
  std::string Listing(const char* command, FastOpen choice) {
    const auto disk = MakeDiskFileSystem();
    Session cli(*disk, session.stateFolder);
    cli.dataFolder = session.dataFolder;
    std::vector<std::string> arguments = {command, "--json"};
    if (choice == FastOpen::kAlways) arguments.push_back("--fast");
    arguments.insert(arguments.end(), vobs.begin(), vobs.end());
    std::istringstream in;
    std::ostringstream out;
    EXPECT_EQ(RunCli(arguments, cli, {in, out, out}), kCliDone);
    return out.str();
  }

  bool Logged(const std::string& text) {
    const Bytes log = FileBytes(session.logPath);
    return std::string(log.begin(), log.end()).find(text) != std::string::npos;
  }

  std::unique_ptr<DiscCopy> disc;
  std::vector<std::string> vobs;
  bool answer = true;
  std::unique_ptr<FileSystem> files = MakeDiskFileSystem();
  test::OpenEditor opened{
      *files, testing::TempDir() + "/state", {}, [this](const std::string&) { return answer; }};
  Editor& editor = *opened;
  Session& session = editor.Context();
  std::vector<std::string>& questions = opened.questions;
  std::vector<std::string>& errors = opened.errors;
};

TEST_P(FastOpenTest, FindsWhatTheScanFinds) {
  const std::string scanned = Listing("list", FastOpen::kNever);
  EXPECT_EQ(Listing("list", FastOpen::kAlways), scanned);

  editor.ReadRecentFiles();
  editor.OpenFiles(vobs, false);
  ASSERT_EQ(questions.size(), 1U);
  EXPECT_EQ(questions.front(),
            "The file(s) you want to open was previously analyzed,\n"
            "and you have the possibility to do a \"fast open\" (which is a lot faster than "
            "rescanning).\n"
            "You won't be able to retime subpics, but everything else will work normally.\n"
            "Do you want to do a fast open?");
  Document& document = editor.Doc();
  EXPECT_TRUE(document.Files().OpenedFromCache());
  EXPECT_FALSE(document.Files().FullTitleDomain());
  EXPECT_TRUE(Logged("subpics"));

  answer = false;
  editor.OpenFiles(vobs, false);
  EXPECT_FALSE(document.Files().OpenedFromCache());
  EXPECT_EQ(document.Files().FullTitleDomain(), vobs != disc->MenuVobs());
  EXPECT_EQ(editor.Recent().Entries().size(), 1U);
}

TEST_P(FastOpenTest, SavingKeepsTheEntryAlive) {
  (void)Listing("list", FastOpen::kNever);
  editor.ReadRecentFiles();
  editor.Run(CommandId::kOpenMostRecent);
  ASSERT_TRUE(editor.Doc().Files().OpenedFromCache());
  const Bytes cache = FileBytes(editor.Recent().EntryPath(0));
  for (const UnitPointer& unit : editor.Doc().Units()) {
    editor.GoTo(unit->number - 1);
    editor.SetTransparency(9, kAlphaAll);
  }
  editor.Run(CommandId::kSaveAll);
  ASSERT_FALSE(editor.Doc().Modified());
  EXPECT_EQ(editor.Recent().Entries().size(), 1U);
  EXPECT_EQ(FileBytes(editor.Recent().EntryPath(0)), cache);
  editor.CloseFiles();
  EXPECT_EQ(Listing("list", FastOpen::kAlways), Listing("list", FastOpen::kNever));

  // Changed by another program: no question, no entry, and a scan.
  std::ofstream(vobs.back(), std::ios::app) << '\0';
  questions.clear();
  editor.Run(CommandId::kOpenMostRecent);
  EXPECT_EQ(errors.size(), 1U);
  EXPECT_FALSE(editor.Doc().IsOpen());
  editor.OpenFiles(vobs, false);
  EXPECT_TRUE(questions.empty());
  EXPECT_FALSE(editor.Doc().Files().OpenedFromCache());
  EXPECT_EQ(editor.Recent().Entries().size(), 1U);
}

TEST_P(FastOpenTest, FindsARetimedSet) {
  if (vobs == disc->MenuVobs()) return;
  editor.OpenFiles(vobs, false);
  editor.Retime({editor.Doc().Units().at(3)}, 1.0);
  EXPECT_TRUE(errors.empty()) << errors.front();
  EXPECT_EQ(editor.Recent().Entries().size(), 1U);
  editor.CloseFiles();
  EXPECT_EQ(Listing("list", FastOpen::kAlways), Listing("list", FastOpen::kNever));
  editor.OpenRecent(0);
  editor.Retime(editor.Doc().Units(), 1.0);
  EXPECT_EQ(errors.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Discs, FastOpenTest, testing::Values("ntsc", "pal", "split", "menu"));

}  // namespace
}  // namespace quillomar
