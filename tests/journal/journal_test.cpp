#include <gtest/gtest.h>

#include "base/platform.h"
#include "journal/journal_transaction.h"
#include "support/crash_matrix.h"
#include "support/message_collector.h"

namespace quillomar::test {
namespace {

class Journal : public testing::Test {
 protected:
  Journal() {
    for (int i = 0; i < 20'000; ++i) old.push_back(static_cast<std::uint8_t>(i * 7 + i / 256));
    messages.files.Put(kPath, old);
    file = messages.files.Open(kPath, OpenMode::kReadWrite);
  }
  std::unique_ptr<WriteTransaction> Begin() { return source.Begin(); }
  const Bytes& Content() { return messages.files.Content(kPath); }
  // A state folder with the journal of a transaction that never ended.
  std::string LeaveJournal() {
    CrashFileSystem crashing({{kPath, old}});
    crashing.FailAt(7, CrashFileSystem::Fault::kKilled);
    Reporter quiet(crashing);
    const std::shared_ptr<File> opened = crashing.Open(kPath, OpenMode::kReadWrite);
    const auto transaction = JournalTransactionSource(crashing, quiet, kStateFolder).Begin();
    (void)transaction->Write(opened, 100, Bytes(50, 1));
    (void)transaction->Write(opened, 9000, Bytes(50, 2));
    (void)transaction->Commit();
    for (const auto& [path, content] : crashing.AfterCrash(CrashFileSystem::Unsynced::kKept, 1)) {
      messages.files.Put(path, content);
    }
    const auto left = folder.Left({kPath});
    EXPECT_EQ(left.size(), 1U);
    EXPECT_NE(Content(), old);
    return left.empty() ? "" : left.front();
  }

  static constexpr const char* kPath = "/d/VTS_01_1.VOB";
  Bytes old;
  MessageCollector messages;
  JournalTransactionSource source{messages.files, messages.reporter, kStateFolder};
  JournalFolder folder{messages.files, messages.reporter, kStateFolder};
  std::shared_ptr<File> file;
};

TEST_F(Journal, KeepsChangesBackUntilTheEndAndWritesOnlyWhatDiffers) {
  {
    const auto transaction = Begin();
    const Bytes some = {1, 2, 3};
    ASSERT_EQ(transaction->Write(file, 4095, some), Result::kDone);
    EXPECT_EQ(Content(), old);
    Bytes read(5);
    EXPECT_EQ(transaction->Read(*file, 4094, read), 5U);
    EXPECT_EQ(read, (Bytes{old[4094], 1, 2, 3, old[4098]}));
    // Through another handle of the file, too.
    const auto other = messages.files.Open(kPath, OpenMode::kReadOnly);
    EXPECT_EQ(transaction->Read(*other, 4094, read), 5U);
    EXPECT_EQ(read[1], 1);
  }
  EXPECT_EQ(Content(), old);
  const int writes = messages.files.WritesDone();
  const auto transaction = Begin();
  ASSERT_EQ(transaction->Write(file, 0, old), Result::kDone);
  ASSERT_EQ(transaction->Commit(), Result::kDone);
  EXPECT_EQ(messages.files.WritesDone(), writes);
  EXPECT_TRUE(messages.files.List(kStateFolder).empty());
}

TEST_F(Journal, RefusesBeforeTheFirstByte) {
  const Bytes some = {1, 2, 3};
  const auto refused = [&] {
    const auto transaction = Begin();
    EXPECT_EQ(transaction->Write(file, 5, some), Result::kDone);
    EXPECT_EQ(transaction->Commit(), Result::kFailed);
    EXPECT_EQ(Content(), old);
    return messages.errors.back();
  };
  messages.files.SetFreeSpace(1000);
  EXPECT_NE(refused().find("There is not enough room in /state"), std::string::npos);
  messages.files.SetFreeSpace(1'000'000);
  EXPECT_EQ(Begin()->Reserve(500'000), Result::kDone);
  EXPECT_EQ(Begin()->Reserve(1'000'000), Result::kFailed);
  messages.files.SetReadOnly(kPath);
  EXPECT_EQ(refused(), "/d/VTS_01_1.VOB can no longer be written.\nNothing was changed.");
  messages.files.Put(kPath, old);
  file = messages.files.Open(kPath, OpenMode::kReadWrite);
  LeaveJournal();
  old = Content();
  EXPECT_NE(refused().find("waits for being restored"), std::string::npos);
}

TEST_F(Journal, IsOnlyRestoredIntoTheFileItCameFrom) {
  const std::string journal = LeaveJournal();
  const Bytes torn = Content();
  Bytes other = torn;
  other.back() ^= 1;
  messages.files.Content(kPath) = other;
  EXPECT_EQ(folder.Restore(journal), Result::kFailed);
  EXPECT_EQ(Content(), other);
  messages.files.Content(kPath) = torn;
  // A journal that cannot be written now is still one.
  const Bytes records = messages.files.Content(journal);
  messages.files.SetReadOnly(journal);
  EXPECT_EQ(folder.Left({kPath}).size(), 1U);
  EXPECT_EQ(folder.Restore(journal), Result::kFailed);
  EXPECT_EQ(Content(), torn);
  messages.files.Put(journal, records);
  ASSERT_EQ(folder.Restore(journal), Result::kDone);
  EXPECT_EQ(Content(), old);
  EXPECT_TRUE(folder.Left({kPath}).empty());
}

TEST_F(Journal, NothingOfADamagedRecordIsBelieved) {
  const std::string journal = LeaveJournal();
  const Bytes whole = messages.files.Content(journal);
  for (std::size_t i = 0; i < whole.size(); i += 29) {
    messages.files.Content(journal) = whole;
    messages.files.Content(journal)[i] ^= 0x10;
    const Bytes before = Content();
    if (!folder.Left({kPath}).empty()) (void)folder.Restore(journal);
    // Each page is as it was found or as it was before the transaction.
    for (std::size_t place = 0; place < old.size(); ++place) {
      ASSERT_TRUE(Content()[place] == before[place] || Content()[place] == old[place]);
    }
    messages.files.Content(kPath) = before;
    messages.files.Put(journal, whole);
  }
}

TEST_F(Journal, OfACommittedTransactionTakesItBackUnlessTheFileHasChanged) {
  const auto write = [&](std::uint8_t value) {
    const auto transaction = Begin();
    EXPECT_EQ(transaction->Write(file, 5000, Bytes(100, value)), Result::kDone);
    EXPECT_EQ(transaction->Commit(), Result::kDone);
  };
  write(1);
  const Bytes first = Content();
  write(2);
  auto saved = folder.Saved({kPath});
  ASSERT_TRUE(saved);
  messages.files.SetReadOnly(kPath);
  EXPECT_EQ(folder.TakeBack(*saved), Result::kFailed);
  EXPECT_EQ(folder.Saved({kPath}), saved);
  messages.files.SetReadOnly(kPath, false);
  EXPECT_EQ(folder.TakeBack(*saved), Result::kDone);
  EXPECT_EQ(Content(), first);
  EXPECT_FALSE(folder.Saved({kPath}));

  write(3);
  messages.files.SetModificationTime(kPath, 99);
  saved = folder.Saved({kPath});
  ASSERT_TRUE(saved);
  const Bytes third = Content();
  EXPECT_EQ(folder.TakeBack(*saved), Result::kFailed);
  EXPECT_EQ(Content(), third);
}

TEST(JournalOfACreatedFile, IsNoObstacleToTheNextAttempt) {
  const auto create = [](CrashFileSystem& files) {
    Reporter reporter(files);
    const auto transaction = JournalTransactionSource(files, reporter, kStateFolder).Begin();
    const std::shared_ptr<File> file = transaction->OpenOrCreate("/d/a.sup");
    if (file) (void)transaction->Write(file, 0, Bytes(5000, 7));
    return transaction->Commit();
  };
  int operation = 0;
  for (bool killed = true; killed; ++operation) {
    CrashFileSystem files({});
    files.FailAt(operation, CrashFileSystem::Fault::kKilled);
    killed = Failed(create(files));
    CrashFileSystem again(files.AfterCrash(CrashFileSystem::Unsynced::kKept, 1));
    ASSERT_EQ(create(again), Result::kDone) << operation;
    EXPECT_EQ(again.Now().at("/d/a.sup"), Bytes(5000, 7)) << operation;
    EXPECT_LE(again.List(kStateFolder).size(), 1U) << operation;
  }
  EXPECT_GT(operation, 5);
}

TEST(JournalOfARunningTransaction, IsNotRecovered) {
  CrashFileSystem files({{"/d/a", Bytes(200'000, 7)}});
  Reporter reporter(files);
  JournalTransactionSource source(files, reporter, kStateFolder);
  const auto transaction = source.Begin();
  const std::shared_ptr<File> file = transaction->OpenOrCreate("/d/a");
  ASSERT_TRUE(transaction->OpenOrCreate("/d/created"));
  ASSERT_EQ(transaction->Write(file, 0, Bytes(10, 1)), Result::kDone);
  JournalFolder folder(files, reporter, kStateFolder);
  EXPECT_EQ(files.List(kStateFolder).size(), 1U);
  EXPECT_TRUE(folder.Left({"/d/created"}).empty());
  EXPECT_EQ(folder.Restore(std::string(kStateFolder) + "/" + files.List(kStateFolder).front()),
            Result::kFailed);
  // Nor may another transaction change what it changes.
  const auto second = source.Begin();
  ASSERT_EQ(second->Write(second->OpenOrCreate("/d/created"), 0, Bytes(10, 2)), Result::kDone);
  EXPECT_EQ(second->Commit(), Result::kFailed);
  EXPECT_EQ(transaction->Commit(), Result::kDone);
}

}  // namespace
}  // namespace quillomar::test
