// Transactions on small files, killed and failing at each of their operations.

#include <gtest/gtest.h>

#include <iostream>

#include "journal/journal_transaction.h"
#include "support/crash_matrix.h"

namespace quillomar::test {
namespace {

Bytes RandomBytes(std::mt19937& random, std::size_t size) {
  Bytes bytes(size);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

// Writes here and there, over ends, makes a file longer or shorter, creates one.
void ChangeFiles(FileSystem& files, std::uint32_t seed) {
  Reporter reporter(files);
  std::mt19937 random(seed);
  const auto transaction = JournalTransactionSource(files, reporter, kStateFolder).Begin();
  std::vector<std::shared_ptr<File>> opened;
  for (const char* const path : {"/d/a", "/d/b", "/d/new"}) {
    auto file = transaction->OpenOrCreate(path);
    if (file) opened.push_back(std::move(file));
  }
  for (int step = 0; step < 12 && !transaction->Broken() && !opened.empty(); ++step) {
    const auto& file = opened[random() % opened.size()];
    const std::uint64_t place = random() % 50'000;
    if (random() % 6 == 0) {
      (void)transaction->SetSize(file, place);
    } else {
      (void)transaction->Write(file, place, RandomBytes(random, random() % 9000));
    }
  }
  if (random() % 8 != 0) (void)transaction->Commit();
}

void RunSeeds(std::uint32_t count, int mixes) {
  int outcomesNew = 0;
  int states = 0;
  std::size_t losses = 0;
  for (std::uint32_t seed = 1; seed <= count; ++seed) {
    std::mt19937 random(seed);
    CrashScenario scenario;
    scenario.before = {{"/d/a", RandomBytes(random, 41'000)}, {"/d/b", RandomBytes(random, 5'000)}};
    scenario.run = [seed](FileSystem& files) { ChangeFiles(files, seed); };
    const MatrixCounts counts = RunCrashMatrix(scenario, {1, mixes, seed});
    EXPECT_EQ(counts.losses, std::vector<std::string>()) << seed;
    EXPECT_GT(counts.killed, 30) << seed;
    outcomesNew += counts.keptNew;
    states += counts.killed + counts.killedRestores + counts.faults;
    losses += counts.losses.size();
  }
  std::cout << "random transactions: " << count << ", states and faults " << states
            << ", outcomes new " << outcomesNew << ", losses " << losses << std::endl;
  EXPECT_GT(outcomesNew, 20);
}

TEST(JournalCrashes, LeaveOldOrNewBytes) {
  RunSeeds(4, 3);
}

TEST(JournalCrashes, DISABLED_AllOfThem) {
  RunSeeds(300, 4);
}

}  // namespace
}  // namespace quillomar::test
