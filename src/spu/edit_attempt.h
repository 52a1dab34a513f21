#pragma once

#include <tuple>
#include <utility>

#include "base/result.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Runs an edit, a callable that returns a Result. When it fails, the unit's state and selection are
// as before; when it succeeds, the unit is marked modified if its bytes have changed.
template <typename Edit>
Result AttemptEdit(SubpictureUnit& unit, Edit edit) {
  SpuState before = unit.state;
  const auto selection = std::tuple(unit.currentSequence, unit.currentColours, unit.currentAlphas);
  if (Failed(edit())) {
    unit.state = std::move(before);
    std::tie(unit.currentSequence, unit.currentColours, unit.currentAlphas) = selection;
    return Result::kFailed;
  }
  unit.state.modified = before.modified || unit.state.bytes != before.bytes;
  return Result::kDone;
}

}  // namespace quillomar
