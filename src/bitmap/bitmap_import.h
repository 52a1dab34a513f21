#pragma once

#include <string>

#include "bitmap/type_colours.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Replaces the unit's bitmap by what a frame-sized BMP file shows: each pixel becomes the type of
// the nearest colour, and the box around all that is not the unit's background becomes the display
// area as found, moves and border undone. The box begins a line higher where the fields need it to
// keep their lines, and a pixel wider or higher where the background could not be told by its first
// pixel. Fails, with its message and the unit as it was, on a file that cannot be opened or is not
// such a bitmap, and when the bitmap does not fit; fails silently on a unit that cannot be decoded.
Result ImportBmp(SubpictureUnit& unit, const std::string& path, const TypeColours& colours,
                 FileSystem& files, const SpuContext& context);

}  // namespace quillomar
