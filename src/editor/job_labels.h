#pragma once

#include <chrono>
#include <string>

#include "base/job_control.h"

namespace quillomar {

// Title and first line of the progress display.
[[nodiscard]] const char* JobLabelText(Operation operation);

// Whether the job looks at a request to stop. Saving and reverting do not: a disc must not be left
// half written.
[[nodiscard]] bool CanStop(Operation operation);

// How long it will take still, as a line for the user; empty while that is not known. A scan says
// so itself.
[[nodiscard]] std::string TimeLeftText(Operation operation, int percent,
                                       std::chrono::milliseconds elapsed);

}  // namespace quillomar
