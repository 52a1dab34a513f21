#pragma once

#include <optional>

#include "editor/picture.h"
#include "editor/view_options.h"

namespace quillomar {

// The look of one menu button, which the colour scheme of its disc gives it.
struct ShownHighlight {
  DisplayPalette palette;
  int x = 0, y = 0, width = 0, height = 0;  // on the frame: pixels, lines
};

// Nothing when the unit has no such button, when the button has no colours, or when none is to be
// shown. With automatic colours, `shown` being those of the rest of the unit, only the
// transparency is the button's own.
[[nodiscard]] std::optional<ShownHighlight> FindHighlight(const SubpictureUnit& unit,
                                                          const ClutRecord* clut,
                                                          const DisplayPalette& shown,
                                                          const ViewOptions& options);

// Lays the button's look over the picture; pixel types that are not shown stay so.
void PaintHighlight(const SubpictureUnit& unit, const ShownHighlight& highlight,
                    std::optional<int> onlyType, SubpicturePicture& picture);

}  // namespace quillomar
