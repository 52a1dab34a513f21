#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/result.h"
#include "base/transaction.h"
#include "dvd/sector.h"
#include "dvd/vob_file_set.h"
#include "retime/sector_store.h"

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
    return lba >= first_ && lba - first_ < run_.size();
  }
  // A sector of the run, by its LBA in set.
  [[nodiscard]] SectorView At(std::uint32_t lba) const;
  // The same to be changed: it will be written.
  [[nodiscard]] std::span<std::uint8_t, kSectorSize> Edit(std::uint32_t lba);
  // Moves one sector to another place of the run; those between give way by one.
  void MoveSector(std::uint32_t from, std::uint32_t to);

 private:
  // Sectors change places without being copied.
  struct Held {
    SectorStore::Place place;
    bool changed;
  };
  using Run = std::vector<Held>;

  [[nodiscard]] std::uint32_t End() const {
    return first_ + static_cast<std::uint32_t>(run_.size());
  }
  // Reads the sectors from `begin` on, before `end` (LBAs in set), to the end of a run.
  Result Read(std::uint32_t begin, std::uint32_t end, Run& run);
  // Writes the changed sectors from `begin` on, before `end` (LBAs in set).
  Result WriteChanged(std::uint32_t begin, std::uint32_t end);
  Result WriteStretch(std::uint32_t begin, std::uint32_t end);
  void Drop(std::uint32_t begin, std::uint32_t end);

  VobFileSet& set_;
  WriteTransaction& transaction_;
  SectorStore store_;
  Run run_;
  std::uint32_t first_ = 0;
  Bytes together_;  // sectors on their way to the disk
  bool writeFailed_ = false;
};

}  // namespace quillomar
