#pragma once

#include <string>

namespace quillomar {

// The keys of all commands as a Markdown table, in the order of the command table; for the manual.
[[nodiscard]] std::string KeyTable();

}  // namespace quillomar
