#pragma once

#include <string>
#include <vector>

#include "check_retimed/disc_model.h"

namespace quillomar::check {

using Faults = std::vector<std::string>;

// What is wrong in the navigation of a retimed disc. What the author's own disc, the untouched
// copy, had wrong counts only when it became wrong in another way.
Faults CheckNavigation(const DiscModel& disc, const DiscModel& untouched);

// What a retiming should have left alone but did not: file sizes, clock references that go back,
// packets that are not subpictures, and the bytes of units without their times.
Faults CheckMux(const DiscModel& disc, const DiscModel& untouched);

}  // namespace quillomar::check
