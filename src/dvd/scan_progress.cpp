#include "dvd/scan_progress.h"

#include <algorithm>

#include "base/format.h"

namespace quillomar {
namespace {

constexpr std::uint32_t kSectorsPerLine = 2000;
constexpr std::size_t kListedPerLine = 60;
constexpr double kMbPerSector = 0.001953125;
constexpr double kMsPerSecond = 1000;
constexpr double kNewShare = 0.05;  // of a new rate in the one reported

}  // namespace

bool ScanProgress::IsDue(std::uint32_t lba, std::optional<std::size_t> remaining) {
  return remaining ? *remaining % kListedPerLine == 0 : (lba + 1) % kSectorsPerLine == 0;
}

void ScanProgress::Measure(std::uint32_t lba, std::int64_t elapsedMs) {
  // A scan out of the page cache gets here within the clock's first millisecond.
  const double ms = static_cast<double>(std::max<std::int64_t>(elapsedMs, 1));
  const double now = lba * (kMbPerSector * kMsPerSecond) / ms;
  rate_ = rate_ ? kNewShare * now + (1 - kNewShare) * *rate_ : now;
}

void ScanProgress::Report(std::uint32_t lba, std::int64_t elapsedMs, int unitsFound) {
  Measure(lba, elapsedMs);
  const double toGo = (static_cast<double>(totalSectors_) - lba) * 2 / 1024;
  const double seconds = *rate_ > 0 ? toGo / *rate_ : 0;
  reporter_.LogLine(Format("%.2f MB scanned (%.2f MB/s) -- %d subpics -- %.0f secs to go",
                           lba * kMbPerSector, *rate_, unitsFound, seconds));
  if (totalSectors_ > 0) {
    control_.percent = static_cast<int>(std::uint64_t{lba} * 100 / totalSectors_);
  }
}

void ScanProgress::ReportEnd(std::uint32_t endLba, std::int64_t elapsedMs, int unitsFound) {
  Measure(endLba, elapsedMs);
  reporter_.LogLine(Format("%.2f MB scanned (%.2f MB/s) -- %d subpics", endLba * kMbPerSector,
                           *rate_, unitsFound));
}

}  // namespace quillomar
