#pragma once

#include "spu/subpicture_unit.h"

namespace quillomar {

// Makes all start commands of the unit forced or normal ones; a unit so started is shown even where
// subtitles are off, or not. Marks the unit modified when a byte changes. Fails on a unit that has
// no start command and on a chain that cannot be edited.
Result SetForcedStart(SubpictureUnit& unit, bool forced);

// Makes the unit fully transparent: every alpha of its set-contrast and CHG_COLCON commands becomes
// 0, in all sequences. Marks the unit modified when a byte changes. Fails on a chain that cannot be
// edited.
Result HideUnit(SubpictureUnit& unit);

}  // namespace quillomar
