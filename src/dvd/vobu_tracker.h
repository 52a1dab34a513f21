#pragma once

#include <cstdint>

#include "dvd/scan_results.h"
#include "dvd/sector.h"

namespace quillomar {

// Packs that a VOBU of `length` sectors could still hold at the multiplex rate, by the clock
// references (90 kHz) of its nav pack and the next one. 0 where the clock restarts between them.
[[nodiscard]] std::uint32_t FreePackSlots(std::uint64_t clock, std::uint64_t nextClock,
                                          std::uint32_t length);

// Builds the list of VOBUs from the nav packs of a scan, and the offset that makes times run on
// where a new VOB starts its clock again.
class VobuTracker {
 public:
  explicit VobuTracker(ScanResults& results) : results_(results) {}

  void TakeNavPack(SectorView sector, const NavPack& nav, std::uint32_t lba);
  // Closes the last VOBU and lists the starts.
  void Finish(std::uint32_t endLba);

  // Ticks to add to a time stamp found now to get its time in the whole set.
  [[nodiscard]] std::int64_t TimeOffset() const { return timeOffset_; }

 private:
  void CloseLast(std::uint64_t clock, std::uint32_t lba);
  void UpdateTimeOffset(const NavPack& nav, std::uint32_t lba);

  ScanResults& results_;
  std::int64_t timeOffset_ = 0;
  std::uint64_t lastClock_ = 0;  // 90 kHz, of the last nav pack
};

}  // namespace quillomar
