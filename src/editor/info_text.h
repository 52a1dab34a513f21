#pragma once

#include <string>

#include "dvd/video_standard.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// The information pane's description of a unit as one rich-text (RTF) document.
[[nodiscard]] std::string InfoRtf(const SubpictureUnit& unit, VideoStandard standard);

// The same text plain, one line each.
[[nodiscard]] std::string InfoPlainText(const SubpictureUnit& unit, VideoStandard standard);

}  // namespace quillomar
