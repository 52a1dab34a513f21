#include "editor/recent_files.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace quillomar {
namespace {

class RecentFilesTest : public testing::Test {
 protected:
  static std::string Vob(int disc, int piece = 1) {
    return "/d" + std::to_string(disc) + "/VTS_01_" + std::to_string(piece) + ".VOB";
  }

  void SetUp() override { recent.Open("/data"); }

  // Remembers a set of one file, which is created if need be.
  void Save(int disc) {
    if (!files.Exists(Vob(disc))) files.Put(Vob(disc), {0});
    recent.Save({{Vob(disc)}, {7}});
  }

  std::vector<std::string> Listed() const {
    std::vector<std::string> paths;
    for (const CacheSummary& entry : recent.Entries()) paths.push_back(entry.firstPath);
    return paths;
  }

  void PutText(const std::string& path, const std::string& text) {
    files.Put(path, Bytes(text.begin(), text.end()));
  }

  test::MemoryFileSystem files;
  RecentFiles recent{files};
};

TEST_F(RecentFilesTest, FileIsWrittenToTheCharacter) {
  files.Put(Vob(1), {0});
  files.Put(Vob(1, 2), {0});
  recent.Save({{Vob(1), Vob(1, 2)}, {30, 4, 17, 4}});
  const Bytes& bytes = files.Content("/data/QuillomarLastFile0.txt");
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
            "Quillomar -- Version 1.501, by the Quillomar developers\n2\n"
            "\"/d1/VTS_01_1.VOB\" 0\n\"/d1/VTS_01_2.VOB\" 0\n4\n17\n30\n");
  EXPECT_FALSE(files.Exists("/data/QuillomarLastFileTemp.txt"));
  EXPECT_EQ(RecentFileLabel(recent.Entries().at(0)), "/d1/VTS_01_1.VOB - 2 files");
  EXPECT_EQ(RecentFileLabel({Vob(1), 1}), "/d1/VTS_01_1.VOB ");

  // Found by its first file whatever the case, for a set of as many files or fewer.
  EXPECT_EQ(recent.Find("/D1/vts_01_1.vob", 2), std::size_t{0});
  EXPECT_FALSE(recent.Find(Vob(1), 3));
  EXPECT_FALSE(recent.Find(Vob(1, 2), 1));
}

TEST_F(RecentFilesTest, NewestComesFirstAndTheNinthDropsTheOldest) {
  for (int disc = 1; disc <= 8; ++disc) Save(disc);
  Save(3);
  EXPECT_EQ(Listed(), (std::vector<std::string>{Vob(3), Vob(8), Vob(7), Vob(6), Vob(5), Vob(4),
                                                Vob(2), Vob(1)}));
  Save(9);
  EXPECT_EQ(Listed(), (std::vector<std::string>{Vob(9), Vob(3), Vob(8), Vob(7), Vob(6), Vob(5),
                                                Vob(4), Vob(2)}));
  EXPECT_FALSE(Failed(recent.Promote(7)));
  EXPECT_TRUE(Failed(recent.Promote(8)));
  EXPECT_EQ(recent.Entries().at(0).firstPath, Vob(2));
  RecentFiles other(files);
  other.Open("/data");
  EXPECT_EQ(other.Entries().size(), kMaxRecentFiles);
}

TEST_F(RecentFilesTest, ChangedAndDeletedSetsLeaveTheMenu) {
  for (int disc = 1; disc <= 4; ++disc) Save(disc);
  const Bytes secondOldest = files.Content(recent.EntryPath(2));
  files.Put(Vob(1), {1});  // the oldest entry, so that its file stays where it is
  ASSERT_FALSE(Failed(files.Remove(Vob(3))));
  recent.Rebuild();
  EXPECT_EQ(Listed(), (std::vector<std::string>{Vob(4), Vob(2)}));
  EXPECT_EQ(files.Content(recent.EntryPath(1)), secondOldest);

  Save(1);
  EXPECT_EQ(Listed(), (std::vector<std::string>{Vob(1), Vob(4), Vob(2)}));
  EXPECT_FALSE(files.Exists(recent.EntryPath(3)));
}

TEST_F(RecentFilesTest, FailedWriteKeepsWhatWasKnown) {
  Save(1);
  const Bytes before = files.Content(recent.EntryPath(0));
  files.FailWritesFrom(0);
  recent.Save({{Vob(1)}, {8}});
  recent.Save({{Vob(1)}, {}});
  recent.Save({{"/d\"1/VTS_01_1.VOB"}, {8}});
  EXPECT_EQ(files.Content(recent.EntryPath(0)), before);
  EXPECT_EQ(Listed(), std::vector<std::string>{Vob(1)});
}

TEST_F(RecentFilesTest, OldAndDamagedFilesAreNoEntries) {
  files.Put(Vob(1), {0});
  const std::string rest = " x\n1\n\"" + Vob(1) + "\" 0\n7\n";
  const auto accepted = [&](const std::string& text) {
    PutText(recent.EntryPath(0), text);
    recent.Rebuild();
    return !recent.Entries().empty();
  };
  EXPECT_TRUE(accepted("Quillomar -- Version 1.4104" + rest));
  EXPECT_FALSE(accepted("Quillomar -- Version 1.41" + rest));
  EXPECT_FALSE(accepted("Quillomar -- Version 1.4103" + rest));
  EXPECT_FALSE(accepted("Quillomar -- Version nan" + rest));
  EXPECT_FALSE(accepted("1\n\"" + Vob(1) + "\" 0\n7\n"));
  EXPECT_FALSE(accepted("Quillomar -- Version 1.501\n0\n"));
  EXPECT_FALSE(accepted("Quillomar -- Version 1.501\n2\n\"" + Vob(1) + "\" 0\n7\n"));
  EXPECT_FALSE(accepted("Quillomar -- Version 1.501\n999999999\n\"" + Vob(1) + "\" 0\n"));
  // Opening takes what checking refuses for want of a banner.
  const auto bare = ParseAnalysisCache("1\n\"" + Vob(1) + "\" 0\n7\n4294967296\n8\n");
  ASSERT_TRUE(bare);
  EXPECT_EQ(bare->lbas, std::vector<std::uint32_t>{7});
}

}  // namespace
}  // namespace quillomar
