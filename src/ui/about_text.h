#pragma once

#include <QString>

namespace quillomar {

// What the about box says, as simple HTML: what this is, its version, licence and libraries.
[[nodiscard]] QString AboutText();

}  // namespace quillomar
