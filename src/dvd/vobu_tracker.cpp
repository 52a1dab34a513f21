#include "dvd/vobu_tracker.h"

#include <algorithm>

#include "dvd/pack.h"

namespace quillomar {
namespace {

// Packs that the multiplex rate lets through in a number of ticks: one takes 43,886 periods of
// 27 MHz, and a tick is 300 of them.
std::int64_t PacksIn(std::uint64_t ticks) {
  return static_cast<std::int64_t>(ticks * 150 / 21943);
}

}  // namespace

std::uint32_t FreePackSlots(std::uint64_t clock, std::uint64_t nextClock, std::uint32_t length) {
  // Across a restart of the clock nothing is known about the room.
  if (nextClock < clock) return 0;
  return static_cast<std::uint32_t>(std::max<std::int64_t>(PacksIn(nextClock - clock) - length, 0));
}

void VobuTracker::TakeNavPack(SectorView sector, const NavPack& nav, std::uint32_t lba) {
  const std::uint64_t clock = GetClockReference(sector).base;
  UpdateTimeOffset(nav, lba);
  if (!results_.vobus.empty()) CloseLast(clock, lba);
  lastClock_ = clock;
  results_.vobus.push_back({lba, lba, nav.startTime, nav.endTime, 0, 0, CopySearchInfo(sector)});
}

void VobuTracker::CloseLast(std::uint64_t clock, std::uint32_t lba) {
  VobuEntry& last = results_.vobus.back();
  last.length = lba - last.startLba;
  last.freeSlots = FreePackSlots(lastClock_, clock, last.length);
}

void VobuTracker::UpdateTimeOffset(const NavPack& nav, std::uint32_t lba) {
  if (results_.vobus.empty()) {
    timeOffset_ = -std::int64_t{nav.startTime};
    return;
  }
  const VobuEntry& last = results_.vobus.back();
  if (last.endTime <= nav.startTime) return;
  timeOffset_ += std::int64_t{last.endTime} - nav.startTime;
  results_.timeRestarts.push_back(last.startLba);
  results_.timeRestarts.push_back(lba);
}

void VobuTracker::Finish(std::uint32_t endLba) {
  if (!results_.vobus.empty()) {
    results_.vobus.back().length = endLba - results_.vobus.back().startLba;
  }
  for (const VobuEntry& entry : results_.vobus) results_.scannedStarts.push_back(entry.startLba);
  results_.scannedStarts.push_back(endLba);
  results_.currentStarts = results_.scannedStarts;
}

}  // namespace quillomar
