#include "editor/selection.h"

#include <algorithm>
#include <iterator>

#include "spu/parse.h"

namespace quillomar {

bool ListFilter::Passes(const SubpictureUnit& unit) const {
  if (stream && unit.stream != *stream) return false;
  if (vcid && unit.vcid != *vcid) return false;
  if (modifiedOnly && !unit.state.modified) return false;
  if (forcedOnly && !IsForced(unit)) return false;
  if (characters && !characters->empty() && !HoldsAnyOf(unit.ocrText, *characters)) return false;
  return !search || search->FoundIn(unit.ocrText);
}

void Selection::Refill(const UnitList& all) {
  const UnitPointer current = Current();
  list_.clear();
  std::copy_if(all.begin(), all.end(), std::back_inserter(list_),
               [this](const UnitPointer& unit) { return filter.Passes(*unit); });
  const auto kept = std::find(list_.begin(), list_.end(), current);
  if (kept != list_.end()) {
    index_ = static_cast<int>(kept - list_.begin());
    return;
  }
  const auto after = std::find_if(list_.begin(), list_.end(), [&](const UnitPointer& unit) {
    return current && unit->number >= current->number;
  });
  SetIndex(current ? static_cast<int>(after - list_.begin()) : 0);
}

void Selection::Clear() {
  list_.clear();
  index_ = 0;
  filter = {};
}

bool Selection::SetIndex(int index) {
  const int clamped = std::clamp(index, 0, std::max(Count() - 1, 0));
  const bool changed = clamped != index_;
  index_ = clamped;
  return changed;
}

UnitPointer Selection::Current() const {
  if (index_ >= Count()) return nullptr;
  return list_[static_cast<std::size_t>(index_)];
}

}  // namespace quillomar
