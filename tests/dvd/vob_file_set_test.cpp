#include "dvd/vob_file_set.h"

#include <gtest/gtest.h>

#include "dvd/vob_name.h"
#include "support/direct_transaction.h"
#include "support/message_collector.h"

namespace quillomar {
namespace {

using Strings = std::vector<std::string>;

class FileSet : public testing::Test {
 protected:
  // Every sector holds its own number in the file, every file its mark.
  void Put(const std::string& name, std::size_t sectors, std::uint8_t mark = 0,
           std::size_t extraBytes = 0) {
    Bytes bytes(sectors * kSectorSize + extraBytes, mark);
    for (std::size_t i = 0; i < sectors; ++i) {
      bytes[i * kSectorSize] = static_cast<std::uint8_t>(i);
    }
    messages.files.Put("/d/" + name, std::move(bytes));
  }

  void Open(const std::vector<std::string>& names) {
    for (const std::string& name : names) ASSERT_EQ(set.AddFile("/d/" + name), Result::kDone);
    set.Validate();
    set.LayOut();
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const VobFile& file : set.Files()) names.push_back(file.path.substr(3));
    return names;
  }

  test::MessageCollector messages;
  VobFileSet set{messages.files, messages.reporter};
};

TEST_F(FileSet, FullDomainTakesEveryPieceOfATitleInWhateverCaseAndOnlyAMenuOfAMenu) {
  for (const char* name : {"VTS_02_0.VOB", "VTS_02_1.VOB", "vts_02_2.vob", "VTS_02_4.VOB"}) {
    Put(name, 1);
  }
  ASSERT_EQ(set.OpenFullDomain("/d/VTS_02_4.VOB"), Result::kDone);
  EXPECT_EQ(Names(), (Strings{"VTS_02_1.VOB", "vts_02_2.vob", "VTS_02_4.VOB"}));
  set.Reset();
  ASSERT_EQ(set.OpenFullDomain("/d/VTS_02_0.VOB"), Result::kDone);
  EXPECT_EQ(Names(), (Strings{"VTS_02_0.VOB"}));
  EXPECT_EQ(set.OpenFullDomain("/d/VTS_07_1.VOB"), Result::kFailed);
}

TEST_F(FileSet, TheTitleDomainIsFullFromPieceOneToTheLastOnDiscWhenAllAreWritable) {
  for (const char* name : {"VTS_01_1.VOB", "VTS_01_2.VOB", "VTS_01_3.VOB"}) Put(name, 1);
  const auto isFull = [this](const Strings& names) {
    set.Reset();
    Open(names);
    return set.FullTitleDomain();
  };
  EXPECT_TRUE(isFull({"VTS_01_3.VOB", "VTS_01_1.VOB", "VTS_01_2.VOB"}));
  EXPECT_FALSE(isFull({"VTS_01_2.VOB", "VTS_01_3.VOB"}));
  EXPECT_FALSE(isFull({"VTS_01_1.VOB", "VTS_01_2.VOB"}));
  EXPECT_FALSE(isFull({"VTS_01_1.VOB", "VTS_01_3.VOB"}));
  messages.files.SetReadOnly("/d/VTS_01_2.VOB");
  EXPECT_FALSE(isFull({"VTS_01_1.VOB", "VTS_01_2.VOB", "VTS_01_3.VOB"}));
}

TEST_F(FileSet, ValidateSortsAndCutsToOneDomainOfOneTitleSet) {
  const std::string domain = "All files must belong to the same domain!\nOpening the menu";
  const std::string titleSet = "All files must belong to the same VTS! Keeping first one(s)\n";
  struct Case {
    Strings opened, kept, errors;
  };
  for (const Case& each : {Case{{"VTS_01_1.VOB", "VTS_01_0.VOB"}, {"VTS_01_0.VOB"}, {domain}},
                           Case{{"VTS_01_1.VOB", "VIDEO_TS.VOB"}, {"VIDEO_TS.VOB"}, {domain}},
                           Case{{"VTS_02_1.VOB", "VTS_01_2.VOB", "VTS_01_1.VOB"},
                                {"VTS_01_1.VOB", "VTS_01_2.VOB"},
                                {titleSet}},
                           Case{{"VTS_01_1.VOB", "a.vob"}, {"VTS_01_1.VOB"}, {titleSet}},
                           Case{{"VTS_01_0.VOB"}, {"VTS_01_0.VOB"}, {}}}) {
    messages.errors.clear();
    set.Reset();
    for (const std::string& name : each.opened) Put(name, 1);
    Open(each.opened);
    EXPECT_EQ(Names(), each.kept);
    EXPECT_EQ(messages.errors, each.errors);
  }
}

TEST_F(FileSet, SectorsRunOnAcrossPiecesAndAPartSectorDoesNotCount) {
  Put("VTS_01_1.VOB", 3, 1, 2047);
  Put("VTS_01_2.VOB", 2, 2);
  Open({"VTS_01_1.VOB", "VTS_01_2.VOB"});
  EXPECT_EQ(set.TotalSectors(), 5U);
  ASSERT_TRUE(set.Locate(3));
  EXPECT_EQ(set.Locate(3)->fileIndex, 1);
  EXPECT_EQ(set.Locate(3)->lba, 0U);
  EXPECT_FALSE(set.Locate(5));

  Bytes buffer(2 * kSectorSize);
  ASSERT_EQ(set.ReadSectors(2, 2, buffer), Result::kDone);
  EXPECT_EQ(buffer[0], 2);
  EXPECT_EQ(buffer[kSectorSize], 0);
  EXPECT_EQ(buffer[kSectorSize + 1], 2);
  EXPECT_EQ(set.ReadSectors(4, 2, buffer), Result::kFailed);
  EXPECT_EQ(set.ReadSectors(0, 3, buffer), Result::kFailed);

  std::fill(buffer.begin(), buffer.end(), std::uint8_t{9});
  auto transaction = test::DirectTransactionSource(messages.files).Begin();
  ASSERT_EQ(set.WriteSectors(*transaction, 2, buffer), Result::kDone);
  const Bytes& first = messages.files.Content("/d/VTS_01_1.VOB");
  EXPECT_EQ(first[2 * kSectorSize - 1], 1);
  EXPECT_EQ(first[2 * kSectorSize], 9);
  EXPECT_EQ(first[3 * kSectorSize], 1);
  const Bytes& second = messages.files.Content("/d/VTS_01_2.VOB");
  EXPECT_EQ(second[kSectorSize - 1], 9);
  EXPECT_EQ(second[kSectorSize], 1);
  EXPECT_EQ(set.WriteSectors(*transaction, 4, buffer), Result::kFailed);
  EXPECT_EQ(set.WriteSectors(*transaction, 0, ByteSpan(buffer).first(100)), Result::kFailed);
}

TEST_F(FileSet, TheFirstReadOnlyFileShowsTheMessageOnceAndStopsSaving) {
  for (const char* name : {"VTS_01_1.VOB", "VTS_01_2.VOB", "VTS_01_3.VOB"}) Put(name, 1);
  messages.files.SetReadOnly("/d/VTS_01_2.VOB");
  messages.files.SetReadOnly("/d/VTS_01_3.VOB");
  Open({"VTS_01_1.VOB", "VTS_01_2.VOB", "VTS_01_3.VOB"});
  EXPECT_EQ(set.AddFile("/d/missing.VOB"), Result::kFailed);
  EXPECT_EQ(
      messages.errors,
      (Strings{"File /d/VTS_01_2.VOB is read-only, you won't be able to save your changes!"}));
  EXPECT_FALSE(set.CanSave());
  EXPECT_EQ(set.Files().size(), 3U);
  set.Reset();
  EXPECT_TRUE(set.CanSave());
  EXPECT_TRUE(set.Empty());
}

TEST_F(FileSet, ReopeningTakesUpAFileThatWasReplacedAndReportsOneThatIsGone) {
  Put("VTS_01_1.VOB", 1, 1);
  Open({"VTS_01_1.VOB"});
  Put("VTS_01_1.VOB", 1, 7);
  ASSERT_EQ(set.ReopenAll(), Result::kDone);
  Bytes buffer(kSectorSize);
  ASSERT_EQ(set.ReadSectors(0, 1, buffer), Result::kDone);
  EXPECT_EQ(buffer[1], 7);
  ASSERT_EQ(messages.files.Remove("/d/VTS_01_1.VOB"), Result::kDone);
  EXPECT_EQ(set.ReopenAll(), Result::kFailed);
  EXPECT_EQ(set.ReadSectors(0, 1, buffer), Result::kFailed);
}

TEST_F(FileSet, TheLargestTitleSetWinsAndTheFirstOfEquals) {
  EXPECT_EQ(LargestTitleSet(messages.files, "/d"), 1);
  Put("VTS_01_1.VOB", 2);
  Put("VTS_02_1.VOB", 2);
  Put("vts_02_2.vob", 1);
  Put("VTS_03_1.VOB", 3);
  Put("VTS_04_0.VOB", 9);
  Put("VTS_05_1.VOB", 1);
  Put("VTS_05_3.VOB", 9);
  EXPECT_EQ(LargestTitleSet(messages.files, "/d/"), 2);
}

TEST(VobName, TitlesParseAsFarAsTheirNumbersGo) {
  struct Case {
    const char* title;
    std::optional<int> titleSet, piece;
  };
  for (const Case& each :
       {Case{"VTS_03_2", 3, 2}, Case{"VTS_03_2 copy", 3, 2}, Case{"my vob_ +3_-2", 3, -2},
        Case{"VTS_03", 3, {}}, Case{"_03_2", {}, {}}, Case{"VIDEO_TS", {}, {}},
        Case{"VTS_99999999999_1", {}, {}}}) {
    EXPECT_EQ(ParseVobTitle(each.title).titleSet, each.titleSet) << each.title;
    EXPECT_EQ(ParseVobTitle(each.title).piece, each.piece) << each.title;
  }
  EXPECT_TRUE(IsMenuFile("/x_1_1/video_ts.vob") && IsMenuFile("VTS_01_0.VOB"));
  EXPECT_FALSE(IsMenuFile("VTS_01_1.VOB"));
}

TEST(VobName, NeighboursOfAVob) {
  EXPECT_EQ(IfoPathOfVob("/d/VTS_03_2.VOB"), "/d/VTS_03_0.IFO");
  EXPECT_EQ(IfoPathOfVob("/d/video_ts.vob"), "/d/video_ts.IFO");
  EXPECT_EQ(BackupPathOfIfo("/d/VTS_03_0.IFO"), "/d/VTS_03_0.BUP");
  EXPECT_EQ(BackupPathOfIfo("/d/vts_03_0.ifo"), "/d/vts_03_0.bup");
  EXPECT_EQ(PiecePath("/d/VTS_03_2.VOB", 7), "/d/VTS_03_7.VOB");
  EXPECT_EQ(PiecePath("a.b", 7), "a.b");
  EXPECT_EQ(PieceDigit("/d/VIDEO_TS.VOB"), std::nullopt);
  EXPECT_EQ(VobName(0, 1), "");
  EXPECT_EQ(VobName(3, 10), "VTS_03_10.VOB");
  EXPECT_EQ(IfoNameIndex("/d/Video_ts.ifo"), 0);
  EXPECT_EQ(IfoNameIndex("vts_99_0.IFO"), 99);
  EXPECT_EQ(IfoNameIndex("VTS_01_1.IFO"), std::nullopt);
}

}  // namespace
}  // namespace quillomar
