#pragma once

#include <chrono>
#include <cstdint>
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

// Items done, items a second and time to go of a job that counts; empty for others, and before the
// first item is done. `nowMs` as MonotonicMs tells it.
[[nodiscard]] std::string JobPaceText(const JobControl& control, std::int64_t nowMs);

}  // namespace quillomar
