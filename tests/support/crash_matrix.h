#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/crash_files.h"

namespace quillomar::test {

inline constexpr const char* kStateFolder = "/state";

// Something that changes files in one transaction, over and over from the same state.
struct CrashScenario {
  DeviceState before;
  std::function<void(FileSystem&)> run;
  bool isRestore = false;  // one that fails leaves its work for the next
};

// How much of the matrix is run.
struct MatrixShare {
  int every = 1;  // of the operations, every so-manieth, from a place that the seed chooses
  int mixes = 4;  // random outcomes for each operation, besides all kept and all lost
  std::uint32_t seed = 1;
  bool allFaults = true;  // each operation fails in every way, else in one
};

struct MatrixCounts {
  int operations = 0;               // writes, syncs and changes of names of one undisturbed run
  int killed = 0;                   // states after a kill that were recovered and compared
  int killedRestores = 0;           // the same, with the recovery itself killed
  int faults = 0;                   // runs with a failing operation
  int keptNew = 0;                  // outcomes that were the new state; the others were the old one
  std::vector<std::string> losses;  // neither byte for byte old nor byte for byte new
};

// Kills the scenario at its operations and lets what was not synced get lost, stay or mix; then
// recovers, with the recovery killed as well. Lets its operations fail in every way there is.
// Compares all files but the journals.
[[nodiscard]] MatrixCounts RunCrashMatrix(const CrashScenario& scenario, const MatrixShare& share);

// The files without the journals' folder.
[[nodiscard]] DeviceState DiscOf(DeviceState state);

}  // namespace quillomar::test
