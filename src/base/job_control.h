#pragma once

#include <atomic>

namespace quillomar {

// What the worker is doing; also the scan's state. Selects the label of the progress window.
enum class Operation {
  kNone = 0,
  kScanning = 1,
  kDone = 2,
  kAborted = 3,
  kApplying = 4,
  kReverting = 5,
  kSaving = 6,
  kRetiming = 7,
  kUpdatingPointers = 8,
  kOcr = 9,
  kLoadingRecent = 10,
  kCropping = 11,
  kErasingHearingImpaired = 12,
};

// Shared between the one worker and whoever watches it. The worker writes operation and percent and
// polls abortRequested between items; the watcher does the reverse.
struct JobControl {
  std::atomic<bool> abortRequested = false;
  std::atomic<int> percent = 0;  // 0 to 100
  std::atomic<Operation> operation = Operation::kNone;
};

}  // namespace quillomar
