#pragma once

#include <atomic>
#include <cstdint>

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
  // Of a job that counts what it does: all items, those done, and when it began to count, as
  // MonotonicMs tells it.
  std::atomic<int> items = 0;
  std::atomic<int> itemsDone = 0;
  std::atomic<std::int64_t> countingSince = 0;
};

}  // namespace quillomar
