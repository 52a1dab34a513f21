#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/job_control.h"
#include "base/reporting.h"
#include "dvd/nav_pack.h"
#include "dvd/pack_consumer.h"
#include "dvd/video_standard.h"
#include "dvd/vob_file_set.h"

namespace quillomar {

// One video object unit, from its nav pack to the next.
struct VobuEntry {
  std::uint32_t startLba = 0;    // LBA in set, as scanned
  std::uint32_t currentLba = 0;  // moves with retiming
  std::uint32_t startTime = 0;   // 90 kHz
  std::uint32_t endTime = 0;     // 90 kHz
  std::uint32_t freeSlots = 0;   // packs that could still be multiplexed in
  std::uint32_t length = 0;      // sectors
  SearchInfo searchInfo{};
};

// Everything a scan learns besides the subpictures.
struct ScanResults {
  VideoStandard standard = VideoStandard::kUnknown;
  std::optional<bool> mpeg2;  // nothing when no I-picture was found
  int width = 720;            // of MPEG-2 sequence headers, else the default
  int height = 480;
  int aspect = 0;                            // sequence header's aspect ratio code
  std::optional<std::uint32_t> videoLba;     // pack that settled the standard, LBA in set
  std::vector<VobuEntry> vobus;              // in LBA order
  std::vector<std::uint32_t> scannedStarts;  // VOBU starts and the end LBA, as scanned
  std::vector<std::uint32_t> currentStarts;  // working copy for retiming
  std::vector<std::uint32_t> timeRestarts;   // nav packs on both sides of each restart, LBA in set
  bool interleaved = false;
  bool closedCaptions = false;
  int highestStream = -1;  // 0 to 31
  int unitsFound = 0;
};

struct ScanOptions {
  bool alertOnClosedCaptions = false;
  // Fast mode: only these LBAs in set, ascending.
  std::optional<std::vector<std::uint32_t>> lbas;
};

// Reads the file set in LBA order and hands its subpicture packs to the consumer. Validates and
// lays out the set first. An abort clears the set's full-title-domain flag and leaves
// Operation::kAborted in the control.
class Scanner {
 public:
  Scanner(VobFileSet& set, PackConsumer& consumer, Reporter& reporter, JobControl& control)
      : set_(set), consumer_(consumer), reporter_(reporter), control_(control) {}

  // `results` belongs to the calling thread until the scan returns; nobody else may read it before.
  void Scan(const ScanOptions& options, ScanResults& results);

 private:
  VobFileSet& set_;
  PackConsumer& consumer_;
  Reporter& reporter_;
  JobControl& control_;
};

}  // namespace quillomar
