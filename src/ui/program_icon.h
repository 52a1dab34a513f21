#pragma once

#include <QIcon>

namespace quillomar {

// A screen with two lines of subtitles.
[[nodiscard]] QIcon ProgramIcon();

}  // namespace quillomar
