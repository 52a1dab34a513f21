#pragma once

#include <cstdint>
#include <optional>

#include "base/job_control.h"
#include "base/reporting.h"

namespace quillomar {

// The progress line of a scan, and its percentage. Rates are in MB (2^20 bytes) per second.
class ScanProgress {
 public:
  ScanProgress(Reporter& reporter, JobControl& control, std::uint32_t totalSectors)
      : reporter_(reporter), control_(control), totalSectors_(totalSectors) {}

  // Whether a line is due before the sector is read: every 2000 sectors or, where the sectors to
  // come are counted, every 60 of those.
  [[nodiscard]] static bool IsDue(std::uint32_t lba, std::optional<std::size_t> remaining);

  // `elapsedMs` counts from the scan's start.
  void Report(std::uint32_t lba, std::int64_t elapsedMs, int unitsFound);
  void ReportEnd(std::uint32_t endLba, std::int64_t elapsedMs, int unitsFound);

 private:
  void Measure(std::uint32_t lba, std::int64_t elapsedMs);

  Reporter& reporter_;
  JobControl& control_;
  std::uint32_t totalSectors_;
  std::optional<double> rate_;  // smoothed
};

}  // namespace quillomar
