#include "support/crash_matrix.h"

#include <algorithm>
#include <iterator>

#include "base/format.h"
#include "base/reporting.h"
#include "journal/journal_folder.h"

namespace quillomar::test {
namespace {

using Fault = CrashFileSystem::Fault;
using Unsynced = CrashFileSystem::Unsynced;

constexpr Fault kFaults[] = {Fault::kError, Fault::kShortWrite, Fault::kFull, Fault::kDeadDisk};

std::vector<std::string> PathsOf(const DeviceState& state) {
  std::vector<std::string> paths;
  for (const auto& [path, content] : state) paths.push_back(path);
  return paths;
}

class Matrix {
 public:
  Matrix(const CrashScenario& scenario, const MatrixShare& share)
      : scenario_(scenario), share_(share), random_(share.seed) {}

  MatrixCounts Run() {
    CrashFileSystem files(scenario_.before);
    scenario_.run(files);
    before_ = DiscOf(scenario_.before);
    after_ = DiscOf(files.Now());
    counts_.operations = files.Operations();
    if (CrashFileSystem again(files.Now()); !Left(again).empty()) {
      counts_.losses.emplace_back("a committed transaction leaves a journal");
    }
    const int step = share_.every;
    const auto offset = static_cast<int>(random_() % static_cast<unsigned>(step));
    for (int operation = offset; operation < counts_.operations; operation += step) {
      KillAt(operation);
      const Fault one = kFaults[random_() % std::size(kFaults)];
      for (const Fault fault : kFaults) {
        if (share_.allFaults || fault == one) FailAt(operation, fault);
      }
    }
    return counts_;
  }

 private:
  static std::vector<std::string> Left(CrashFileSystem& files) {
    Reporter reporter(files);
    return JournalFolder(files, reporter, kStateFolder).Left(PathsOf(files.Now()));
  }

  static void Recover(CrashFileSystem& files) {
    Reporter reporter(files);
    JournalFolder folder(files, reporter, kStateFolder);
    for (const std::string& journal : Left(files)) (void)folder.Restore(journal);
  }

  // Recovers on a working disk and compares.
  void Judge(const DeviceState& found, const std::string& what) {
    CrashFileSystem files(found);
    Recover(files);
    const DeviceState disc = DiscOf(files.Now());
    if (disc == after_) ++counts_.keptNew;
    if (disc != after_ && disc != before_) counts_.losses.push_back(what);
  }

  void KillAt(int operation) {
    CrashFileSystem files(scenario_.before);
    files.FailAt(operation, Fault::kKilled);
    scenario_.run(files);
    for (int mix = -2; mix < share_.mixes; ++mix) {
      const Unsynced unsynced = mix == -2   ? Unsynced::kLost
                                : mix == -1 ? Unsynced::kKept
                                            : Unsynced::kMixed;
      const DeviceState found = files.AfterCrash(unsynced, static_cast<std::uint32_t>(random_()));
      const std::string what = Format("killed at operation %d, mix %d", operation, mix);
      ++counts_.killed;
      Judge(found, what);
      KillRecovery(found, what);
    }
  }

  // One operation of the recovery, by chance, for each state: all of them over a matrix.
  void KillRecovery(const DeviceState& found, const std::string& what) {
    CrashFileSystem counted(found);
    Recover(counted);
    if (counted.Operations() == 0) return;
    CrashFileSystem files(found);
    const auto operation =
        static_cast<int>(random_() % static_cast<unsigned>(counted.Operations()));
    files.FailAt(operation, Fault::kKilled);
    Recover(files);
    ++counts_.killedRestores;
    Judge(files.AfterCrash(Unsynced::kMixed, static_cast<std::uint32_t>(random_())),
          Format("%s, recovery killed at operation %d", what.c_str(), operation));
  }

  void FailAt(int operation, Fault fault) {
    CrashFileSystem files(scenario_.before);
    files.FailAt(operation, fault);
    scenario_.run(files);
    ++counts_.faults;
    const std::string what =
        Format("operation %d fails in way %d", operation, static_cast<int>(fault));
    Judge(files.Now(), what);
    const DeviceState disc = DiscOf(files.Now());
    // Only a disk that stays dead may leave work for the recovery.
    const bool mayLeave = fault == Fault::kDeadDisk || scenario_.isRestore;
    if (!mayLeave && disc != after_ && disc != before_) {
      counts_.losses.push_back(what + ", left for the recovery");
    }
  }

  const CrashScenario& scenario_;
  MatrixShare share_;
  std::mt19937 random_;
  DeviceState before_;
  DeviceState after_;
  MatrixCounts counts_;
};

}  // namespace

DeviceState DiscOf(DeviceState state) {
  std::erase_if(state, [](const auto& entry) { return entry.first.starts_with(kStateFolder); });
  return state;
}

MatrixCounts RunCrashMatrix(const CrashScenario& scenario, const MatrixShare& share) {
  return Matrix(scenario, share).Run();
}

}  // namespace quillomar::test
