#pragma once

#include "base/job_control.h"

namespace quillomar {

// Title and first line of the progress display.
[[nodiscard]] const char* JobLabelText(Operation operation);

}  // namespace quillomar
