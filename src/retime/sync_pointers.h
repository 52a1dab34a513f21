#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/reporting.h"
#include "dvd/nav_pack.h"
#include "dvd/sector.h"
#include "dvd/vob_file_set.h"
#include "retime/nav_update.h"

namespace quillomar {

// Repairs the synchronisation pointers of nav packs: the distance to the audio pack heard at the
// VOBU's start, and the distance to the nav pack before the unit shown. The VOBU that holds the
// unit itself says "none", as does one without a unit.
class SyncPointers {
 public:
  SyncPointers(const std::vector<VobuEntry>& vobus, const NavChanges& changes, VobFileSet& set,
               WriteTransaction& transaction, Reporter& reporter)
      : vobus_(vobus),
        changes_(changes),
        set_(set),
        transaction_(transaction),
        reporter_(reporter) {}

  // `sector` is the nav pack of VOBU `index`.
  void Update(std::size_t index, Sector& sector);

 private:
  void UpdateAudio(std::size_t index, std::size_t offset, Sector& sector);
  void UpdateSubpicture(std::size_t index, int stream, Sector& sector);
  [[nodiscard]] bool IsAudio(std::uint32_t lba);

  const std::vector<VobuEntry>& vobus_;
  const NavChanges& changes_;
  VobFileSet& set_;
  WriteTransaction& transaction_;
  Reporter& reporter_;
};

}  // namespace quillomar
