#pragma once

#include <vector>

#include "base/job_control.h"
#include "base/reporting.h"
#include "base/transaction.h"
#include "dvd/scan_results.h"
#include "dvd/vob_file_set.h"
#include "retime/displaced.h"
#include "retime/shown_units.h"
#include "retime/timeline.h"

namespace quillomar {

// What the nav packs are brought up to date with. Times and order of VOBUs do not change.
struct NavChanges {
  const DisplacedPacks& displaced;
  const ShownUnits& before;  // units as the synchronisation pointers know them
  const ShownUnits& after;
  const Timeline& timeline;
};

// Makes the pointers between VOBUs and the synchronisation pointers of every nav pack true again,
// from where the VOBUs stood at the scan to where they stand now. What was wrong before is logged
// and stays. Fails when a nav pack cannot be read or written.
Result UpdateNavPacks(std::vector<VobuEntry>& vobus, const NavChanges& changes, VobFileSet& set,
                      WriteTransaction& transaction, Reporter& reporter, JobControl& control);

}  // namespace quillomar
