#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "dvd/vob_file_set.h"
#include "retime/pack_move.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

using RetimedUnits = std::vector<std::shared_ptr<SubpictureUnit>>;

// Which unit's pack stands where, by LBA in set; keeps the units' pack lists true while packs move.
class PackIndex {
 public:
  PackIndex(const VobFileSet& set, const RetimedUnits& units);

  // A move of pack `pack` of `unit` has been carried out.
  void Follow(const PackMove& move, SubpictureUnit& unit, std::size_t pack);
  // Some pack of another unit of the same stream stands in the VOBU.
  [[nodiscard]] bool HasOtherOfStream(const VobuEntry& vobu, const SubpictureUnit& unit) const;
  // Units whose first pack lies from `first` on, before `end`.
  [[nodiscard]] std::vector<SubpictureUnit*> Starting(std::uint32_t first, std::uint32_t end) const;

 private:
  struct Entry {
    SubpictureUnit* unit;
    std::size_t pack;
  };
  void Put(std::uint32_t lba, Entry entry);

  const VobFileSet& set_;
  std::map<std::uint32_t, Entry> entries_;
};

}  // namespace quillomar
