#pragma once

#include <string>

#include "bitmap/ppm.h"
#include "bitmap/type_colours.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

enum class BmpDepth { k4Bit = 4, k24Bit = 24 };

// Writes the unit as it is shown, on a whole frame of the background's colour. Fails without a
// message when the unit cannot be decoded or the file cannot be written.
Result ExportBmp(SubpictureUnit& unit, const std::string& path, BmpDepth depth,
                 const TypeColours& colours, FileSystem& files, const SpuContext& context);

// Writes the unit's own area, scaled. Fails without a message as above and for a scale at which
// there is no picture.
Result ExportPpm(SubpictureUnit& unit, const std::string& path, PpmScale scale,
                 const TypeColours& colours, FileSystem& files, const SpuContext& context);

}  // namespace quillomar
