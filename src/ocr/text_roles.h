#pragma once

#include "spu/subpicture_unit.h"

namespace quillomar {

// Finds which pixel type of a decoded bitmap is the text's, which its outline's. They stay as they
// were when the row below the content's first one holds nothing but background. The buttons of a
// menu are no text: such a unit gets the roles by default.
void FindTextRoles(SubpictureUnit& unit);

}  // namespace quillomar
