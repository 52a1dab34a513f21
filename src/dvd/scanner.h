#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/job_control.h"
#include "base/reporting.h"
#include "dvd/pack_consumer.h"
#include "dvd/parallel_source.h"
#include "dvd/scan_results.h"
#include "dvd/vob_file_set.h"

namespace quillomar {

struct ScanOptions {
  bool alertOnClosedCaptions = false;
  // Fast mode: only these LBAs in set; those that cannot be read are passed over.
  std::optional<std::vector<std::uint32_t>> lbas;
};

// Reads the file set in LBA order and hands its subpicture packs to the consumer. Validates and
// lays out the set first. A file that cannot be read any further ends its own part only. The
// control's operation tells the state: kScanning (kLoadingRecent in fast mode), then kDone or
// kAborted; an abort also clears the set's full-title-domain flag, and what was found so far stays.
class Scanner {
 public:
  Scanner(VobFileSet& set, PackConsumer& consumer, Reporter& reporter, JobControl& control,
          const ReadAhead& ahead = {})
      : set_(set), consumer_(consumer), reporter_(reporter), control_(control), ahead_(ahead) {}

  // `results` belongs to the calling thread until the scan returns; nobody else may read it before.
  void Scan(const ScanOptions& options, ScanResults& results);

 private:
  VobFileSet& set_;
  PackConsumer& consumer_;
  Reporter& reporter_;
  JobControl& control_;
  const ReadAhead ahead_;
};

}  // namespace quillomar
