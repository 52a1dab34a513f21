#pragma once

#include <string>

#include "base/reporting.h"
#include "editor/document.h"

namespace quillomar {

// The recognised text of the units as SubRip. A record bears its unit's number in the set, so those
// without text and those never shown leave gaps.
[[nodiscard]] std::string SrtText(const UnitList& units, const SpuContext& context);

// The information of every unit of a list, plain, with an empty line after each.
[[nodiscard]] std::string InfoListText(const UnitList& units, VideoStandard standard);

// Writes a text file. When it cannot be opened, says so and fails; what cannot be written to it is
// reported too.
Result WriteTextFile(FileSystem& files, Reporter& reporter, const std::string& path,
                     const std::string& text);

}  // namespace quillomar
