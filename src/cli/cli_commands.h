#pragma once

#include <iosfwd>
#include <vector>

#include "cli/cli_call.h"

namespace quillomar {

[[nodiscard]] const std::vector<CliCommand>& CliCommands();

void PrintCliHelp(std::ostream& out);

}  // namespace quillomar
