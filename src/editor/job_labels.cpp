#include "editor/job_labels.h"

#include <algorithm>

#include "base/format.h"

namespace quillomar {
namespace {

constexpr std::chrono::milliseconds kTooEarly{1000};
constexpr int kAll = 100;
constexpr int kMostSeconds = 90;  // from here on minutes are told
constexpr int kSecondsInMinute = 60;

}  // namespace

const char* JobLabelText(Operation operation) {
  switch (operation) {
    case Operation::kNone:
      return "";
    case Operation::kScanning:
      return "Scanning VOB file(s)";
    case Operation::kDone:
      return "Done...";
    case Operation::kAborted:
      return "Aborted";
    case Operation::kApplying:
      return "Applying modifications";
    case Operation::kReverting:
      return "Reverting";
    case Operation::kSaving:
      return "Saving modifications";
    case Operation::kRetiming:
      return "Re-timing";
    case Operation::kUpdatingPointers:
      return "Updating trick-play pointers";
    case Operation::kOcr:
      return "Running OCR (based on Tesseract)";
    case Operation::kLoadingRecent:
      return "Loading file(s) from MRU";
    case Operation::kCropping:
      return "Cropping subpic background";
    case Operation::kErasingHearingImpaired:
      return "Erasing Hearing-Impaired text";
  }
  return "";
}

bool CanStop(Operation operation) {
  return operation != Operation::kSaving && operation != Operation::kReverting &&
         operation != Operation::kUpdatingPointers;
}

std::string TimeLeftText(Operation operation, int percent, std::chrono::milliseconds elapsed) {
  const bool known = percent > 0 && percent < kAll && elapsed >= kTooEarly;
  if (!known || operation == Operation::kScanning || operation == Operation::kLoadingRecent) {
    return {};
  }
  const auto left = elapsed * (kAll - percent) / percent;
  const auto seconds = static_cast<int>(std::chrono::ceil<std::chrono::seconds>(left).count());
  if (seconds < kMostSeconds) return Format("About %d s left", seconds);
  return Format("About %d min left", (seconds + kSecondsInMinute - 1) / kSecondsInMinute);
}

std::string JobPaceText(const JobControl& control, std::int64_t nowMs) {
  constexpr double kMsPerSecond = 1000;
  const int items = control.items;
  const int done = control.itemsDone;
  if (items == 0 || done == 0) return {};
  const double seconds =
      static_cast<double>(std::max<std::int64_t>(nowMs - control.countingSince, 1)) / kMsPerSecond;
  const int left = static_cast<int>((items - done) * seconds / done);
  return Format("%d of %d subpics, %.1f a second, %d:%02d to go", done, items, done / seconds,
                left / kSecondsInMinute, left % kSecondsInMinute);
}

}  // namespace quillomar
