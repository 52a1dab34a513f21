#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/result.h"
#include "base/transaction.h"
#include "dvd/sector.h"
#include "dvd/vob_file_set.h"

namespace quillomar {

// A run of consecutive sectors in memory, in which packs change places. What was changed is written
// back when it is not part of the next run that is loaded, and by Flush.
class MoveBuffer {
 public:
  MoveBuffer(VobFileSet& set, WriteTransaction& transaction)
      : set_(set), transaction_(transaction) {}

  // Holds the sectors `first` to `last` (LBAs in set) afterwards, perhaps more of them. Fails when
  // the old run could not be written or the new one could not be read; WriteFailed tells them
  // apart.
  Result Load(std::uint32_t first, std::uint32_t last);
  // Writes back what was changed; a failure is final.
  Result Flush();
  [[nodiscard]] bool WriteFailed() const { return writeFailed_; }

  [[nodiscard]] bool Holds(std::uint32_t lba) const {
    return lba >= first_ && lba - first_ < count_;
  }
  // A sector of the run, by its LBA in set.
  [[nodiscard]] SectorView At(std::uint32_t lba) const;
  // The same to be changed: it will be written.
  [[nodiscard]] std::span<std::uint8_t, kSectorSize> Edit(std::uint32_t lba);
  // Moves one sector to another place of the run; those between give way by one.
  void MoveSector(std::uint32_t from, std::uint32_t to);

 private:
  // Writes the changed sectors from `begin` on, before `end` (LBAs in set).
  Result WriteChanged(std::uint32_t begin, std::uint32_t end);

  VobFileSet& set_;
  WriteTransaction& transaction_;
  std::vector<std::uint8_t> bytes_;
  std::vector<bool> changed_;  // by sector of the run
  std::uint32_t first_ = 0;
  std::uint32_t count_ = 0;
  bool writeFailed_ = false;
};

}  // namespace quillomar
