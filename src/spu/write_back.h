#pragma once

#include "base/transaction.h"
#include "dvd/vob_file_set.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Writes an edited unit into its own packs: compacts it, fills what is left of each pack with
// padding or stuffing, turns freed packs into padding packs. Fails with a message naming the pack
// on a seek, read or write error, and without a write on a scrambled unit or one that needs more
// packs than it has.
Result WriteBack(SubpictureUnit& unit, VobFileSet& set, WriteTransaction& transaction,
                 const SpuContext& context);

// Reads the unit again from its packs, dropping its edits. Identity, numbers, VCID, CLUT, times and
// buttons stay. Fails with a message when the packs no longer hold the whole unit.
Result Reload(SubpictureUnit& unit, VobFileSet& set, const SpuContext& context);

}  // namespace quillomar
