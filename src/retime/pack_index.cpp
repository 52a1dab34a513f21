#include "retime/pack_index.h"

namespace quillomar {

PackIndex::PackIndex(const VobFileSet& set, const RetimedUnits& units) : set_(set) {
  for (const auto& unit : units) {
    for (std::size_t i = 0; i < unit->packs.size(); ++i) {
      entries_.insert_or_assign(unit->packs[i].lba, Entry{unit.get(), i});
    }
  }
}

void PackIndex::Put(std::uint32_t lba, Entry entry) {
  entries_.insert_or_assign(lba, entry);
  SpuPack& pack = entry.unit->packs[entry.pack];
  pack.lba = lba;
  const auto place = set_.Locate(lba);
  if (!place) return;
  pack.fileIndex = place->fileIndex;
  pack.lbaInFile = place->lba;
}

void PackIndex::Follow(const PackMove& move, SubpictureUnit& unit, std::size_t pack) {
  entries_.erase(move.source);
  std::vector<std::pair<std::uint32_t, Entry>> shifted;
  auto entry = entries_.lower_bound(move.first);
  while (entry != entries_.end() && move.Shifts(entry->first)) {
    shifted.emplace_back(entry->first + static_cast<std::uint32_t>(move.direction), entry->second);
    entry = entries_.erase(entry);
  }
  for (const auto& [lba, each] : shifted) Put(lba, each);
  Put(move.target, {&unit, pack});
}

bool PackIndex::HasOtherOfStream(const VobuEntry& vobu, const SubpictureUnit& unit) const {
  const std::uint32_t end = vobu.currentLba + vobu.length;
  for (auto entry = entries_.lower_bound(vobu.currentLba);
       entry != entries_.end() && entry->first < end; ++entry) {
    const SubpictureUnit* const other = entry->second.unit;
    if (other != &unit && other->stream == unit.stream) return true;
  }
  return false;
}

std::vector<SubpictureUnit*> PackIndex::Starting(std::uint32_t first, std::uint32_t end) const {
  std::vector<SubpictureUnit*> units;
  for (auto entry = entries_.lower_bound(first); entry != entries_.end() && entry->first < end;
       ++entry) {
    if (entry->second.pack == 0) units.push_back(entry->second.unit);
  }
  return units;
}

}  // namespace quillomar
