#pragma once

#include "base/reporting.h"
#include "dvd/video_standard.h"

namespace quillomar {

// What reading and editing a unit needs from outside it.
struct SpuContext {
  Reporter& reporter;
  ReportLimit& limit;
  VideoStandard standard = VideoStandard::kUnknown;
};

}  // namespace quillomar
