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
  EXPECT_EQ(ParseCommandLine(Arguments(12, "a.vob")).files.size(), kMaxCommandLineFiles);
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

TEST(CommandLine, ADiscMeansItsLargestTitleSet) {
  test::MemoryFileSystem files;
  for (const auto& [name, sectors] : {std::pair("VTS_01_1.VOB", 3U),
                                      {"VTS_02_0.VOB", 50U},
                                      {"vts_02_1.vob", 2U},
                                      {"vts_02_2.vob", 2U}}) {
    files.Put(std::string("/disc/") + name, Bytes(sectors * kSectorSize));
  }
  struct Case {
    Arguments arguments, chosen;
    StartUpAction action;
  };
  const Arguments largest = {"/disc/vts_02_1.vob"};
  for (const Case& each :
       {Case{{"-A", "/disc/VTS_01_1.VOB", "x.vob"}, largest, StartUpAction::kFullDomain},
        Case{{"/disc/VIDEO_TS.ifo"}, largest, StartUpAction::kFullDomain},
        Case{{"/empty/VIDEO_TS.IFO"}, {"/empty/VTS_01_1.VOB"}, StartUpAction::kFullDomain},
        Case{{"/disc/VTS_01_1.VOB"}, {"/disc/VTS_01_1.VOB"}, StartUpAction::kVobs},
        Case{{"-A"}, {}, StartUpAction::kNothing}}) {
    StartUpRequest request = ParseCommandLine(each.arguments);
    ChooseTitleSet(request, files);
    EXPECT_EQ(request.files, each.chosen);
    EXPECT_EQ(ActionFor(request), each.action);
  }
}

}  // namespace
}  // namespace quillomar
