#include "app/command_line.h"

#include <gtest/gtest.h>

#include "dvd/sector.h"
#include "support/memory_files.h"

namespace quillomar {
namespace {

using Arguments = std::vector<std::string>;

TEST(CommandLine, TakesOptionsAndFilesInAnyOrder) {
  const Arguments arguments = {"a.vob", "-x", "-F", "b.vob", "--quiet", "-"};
  const StartUpRequest request = ParseCommandLine(arguments);
  EXPECT_EQ(request.files, (Arguments{"a.vob", "b.vob"}));
  EXPECT_TRUE(request.openFullDomain);
  EXPECT_FALSE(request.automatic);
}

TEST(CommandLine, KeepsTenFiles) {
  const Arguments arguments(12, "a.vob");
  EXPECT_EQ(ParseCommandLine(arguments).files.size(), kMaxCommandLineFiles);
}

TEST(CommandLine, FirstExtensionDecides) {
  const auto action = [](const Arguments& arguments) {
    return ActionFor(ParseCommandLine(arguments));
  };
  EXPECT_EQ(action({"-F"}), StartUpAction::kNothing);
  EXPECT_EQ(action({"A.VOB", "b.txt"}), StartUpAction::kVobs);
  EXPECT_EQ(action({"a.Vob", "-F"}), StartUpAction::kFullDomain);
  EXPECT_EQ(action({"-F", "a.SUP"}), StartUpAction::kSup);
  EXPECT_EQ(action({"notes.txt", "a.vob"}), StartUpAction::kRefuse);
  EXPECT_EQ(action({"-F", "folder.vob/name"}), StartUpAction::kRefuse);
}

class TitleSetChoice : public ::testing::Test {
 protected:
  void PutVob(const std::string& path, std::size_t sectors) {
    files_.Put(path, Bytes(sectors * kSectorSize));
  }
  StartUpRequest Choose(const Arguments& arguments) {
    StartUpRequest request = ParseCommandLine(arguments);
    ChooseTitleSet(request, files_);
    return request;
  }
  test::MemoryFileSystem files_;
};

TEST_F(TitleSetChoice, PicksTheLargestOfTheFolder) {
  PutVob("/disc/VTS_01_1.VOB", 3);
  PutVob("/disc/VTS_02_0.VOB", 50);
  PutVob("/disc/vts_02_1.vob", 2);
  PutVob("/disc/vts_02_2.vob", 2);
  PutVob("/disc/VTS_03_1.VOB", 4);
  const Arguments chosen = {"/disc/vts_02_1.vob"};
  for (const Arguments& arguments :
       {Arguments{"-A", "/disc/VTS_01_1.VOB", "x.vob"}, Arguments{"/disc/VIDEO_TS.ifo"}}) {
    const StartUpRequest request = Choose(arguments);
    EXPECT_EQ(request.files, chosen);
    EXPECT_EQ(ActionFor(request), StartUpAction::kFullDomain);
  }
}

TEST_F(TitleSetChoice, FallsBackToTheFirstTitleSet) {
  EXPECT_EQ(Choose({"/empty/VIDEO_TS.IFO"}).files, (Arguments{"/empty/VTS_01_1.VOB"}));
}

TEST_F(TitleSetChoice, LeavesOtherRequestsAlone) {
  PutVob("/disc/VTS_01_1.VOB", 1);
  PutVob("/disc/VTS_02_1.VOB", 2);
  EXPECT_EQ(Choose({"-F", "/disc/VTS_01_1.VOB"}).files, (Arguments{"/disc/VTS_01_1.VOB"}));
  EXPECT_TRUE(Choose({"-A"}).files.empty());
}

}  // namespace
}  // namespace quillomar
