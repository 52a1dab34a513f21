#include "base/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "base/paths.h"
#include "base/platform.h"
#include "support/memory_files.h"

namespace quillomar {
namespace {

class DiskFiles : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "/quillomarXXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::string folder;
  std::unique_ptr<FileSystem> files = MakeDiskFileSystem();
};

TEST_F(DiskFiles, ASecondWriterIsDeniedUntilTheFirstCloses) {
  const std::string path = folder + "/a.vob";
  ASSERT_TRUE(files->Open(path, OpenMode::kCreate));
  auto first = files->Open(path, OpenMode::kExclusiveWrite);
  ASSERT_TRUE(first);
  EXPECT_FALSE(files->Open(path, OpenMode::kExclusiveWrite));
  // Closing another handle of the file leaves the lock alone.
  EXPECT_TRUE(files->Open(path, OpenMode::kReadOnly));
  EXPECT_FALSE(files->Open(path, OpenMode::kExclusiveWrite));
  first.reset();
  EXPECT_TRUE(files->Open(path, OpenMode::kExclusiveWrite));
}

TEST_F(DiskFiles, ReadsAndWritesBeyondTheEndAndTellsFoldersApart) {
  const std::string path = folder + "/a.bin";
  auto file = files->Open(path, OpenMode::kCreate);
  ASSERT_TRUE(file);
  const Bytes data = {1, 2, 3};
  ASSERT_EQ(file->WriteAt(5, data), Result::kDone);
  EXPECT_EQ(file->Size(), 8U);
  Bytes back(10, 0xEE);
  EXPECT_EQ(file->ReadAt(4, back), 4U);
  EXPECT_EQ(back[1], 1);
  EXPECT_EQ(file->ReadAt(100, back), 0U);
  EXPECT_FALSE(files->Open(folder, OpenMode::kReadOnly));
  EXPECT_FALSE(files->Open(folder + "/missing", OpenMode::kReadWrite));
  EXPECT_TRUE(files->IsFolder(folder));
  EXPECT_EQ(files->List(folder), std::vector<std::string>{"a.bin"});
}

TEST_F(DiskFiles, TheTemporaryFolderIsTheUsersOwn) {
  ASSERT_EQ(setenv("TMPDIR", folder.c_str(), 1), 0);
  unsetenv("TEMP");
  setenv("APPDATA", folder.c_str(), 1);
  PrepareEnvironment();
  const std::string temp = EnvironmentVariable("TEMP").value_or("");
  struct stat status {};
  ASSERT_EQ(stat(temp.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  EXPECT_EQ(EnvironmentVariable("APPDATA"), folder);

  // A folder somebody else could have prepared is not used.
  ASSERT_EQ(chmod(temp.c_str(), 0777), 0);
  unsetenv("TEMP");
  PrepareEnvironment();
  EXPECT_NE(EnvironmentVariable("TEMP").value_or(temp), temp);
}

TEST(Paths, SplitAtEitherSeparatorAndTheLastDot) {
  const PathParts parts = SplitPath("C:\\discs/my.disc\\VTS_01_1.VOB");
  EXPECT_EQ(parts.folder, "C:\\discs/my.disc\\");
  EXPECT_EQ(parts.title, "VTS_01_1");
  EXPECT_EQ(parts.extension, ".VOB");
  EXPECT_EQ(SplitPath("a.b/name").extension, "");
  EXPECT_EQ(JoinPath("/a/", "b"), "/a/b");
  EXPECT_EQ(JoinPath("/a", "b"), "/a/b");
}

TEST(Paths, FilesAreFoundWithoutRegardToCase) {
  test::MemoryFileSystem files;
  files.Put("/d/vts_01_0.ifo", {1});
  EXPECT_EQ(FindIgnoringCase(files, "/d/VTS_01_0.IFO"), "/d/vts_01_0.ifo");
  EXPECT_EQ(FindIgnoringCase(files, "/d/VTS_02_0.IFO"), "/d/VTS_02_0.IFO");
}

}  // namespace
}  // namespace quillomar
