// What follows the moves of a retiming: lists, nav packs and IFO in line with the new places.

#include <algorithm>
#include <array>

#include "retime/ifo_update.h"
#include "retime/nav_update.h"
#include "retime/retimer.h"

namespace quillomar {

Result Retimer::RepairNavigation() {
  if (Failed(FlushBuffer())) return Result::kFailed;
  SortMasterLists();
  ScanResults& results = disc_.results;
  const DisplacedPacks displaced = Displaced();
  if (Failed(RepairNavPacks(displaced))) return Result::kFailed;
  for (std::size_t i = 0; i < results.vobus.size(); ++i) {
    results.currentStarts[i] = results.vobus[i].currentLba;
  }
  const StartLists starts{results.scannedStarts, results.currentStarts};
  const Result ifo = UpdateIfo(disc_.ifo, starts, transaction_, reporter_);
  TakeOverPlaces(displaced);
  return ifo;
}

Result Retimer::RepairNavPacks(const DisplacedPacks& displaced) {
  std::vector<VobuEntry>& vobus = disc_.results.vobus;
  const ShownUnits shownNow(disc_.units, vobus, timeline_);
  const NavChanges changes{displaced, shownBefore_, shownNow, timeline_};
  return UpdateNavPacks(vobus, changes, disc_.set, transaction_, reporter_, control_);
}

void Retimer::SortMasterLists() {
  reporter_.LogLine("Sorting Master Lists");
  // A unit counts from where it is complete, as in a scan; streams may interleave.
  const auto place = [](const std::shared_ptr<SubpictureUnit>& unit) {
    return unit->packs.empty() ? 0 : unit->packs.back().lba;
  };
  std::stable_sort(disc_.units.begin(), disc_.units.end(),
                   [&](const auto& a, const auto& b) { return place(a) < place(b); });
  int number = 0;
  std::array<int, kSubpictureStreams> inStream{};
  for (const auto& unit : disc_.units) {
    unit->number = ++number;
    unit->numberInStream = ++inStream[static_cast<std::size_t>(unit->stream)];
  }
}

// Subpicture packs that stayed count as moved too: they are nobody's target.
DisplacedPacks Retimer::Displaced() const {
  std::vector<std::uint32_t> now;
  for (const auto& unit : disc_.units) {
    for (const SpuPack& pack : unit->packs) now.push_back(pack.lba);
  }
  return {packsBefore_, std::move(now)};
}

void Retimer::TakeOverPlaces(const DisplacedPacks& displaced) {
  ScanResults& results = disc_.results;
  for (std::uint32_t& lba : results.timeRestarts) lba = displaced.PlaceOf(lba);
  for (std::uint32_t& lba : results.highlightNavs) lba = displaced.PlaceOf(lba);
  if (results.videoLba) results.videoLba = displaced.PlaceOf(*results.videoLba);
  for (VobuEntry& vobu : results.vobus) vobu.startLba = vobu.currentLba;
  results.scannedStarts = results.currentStarts;
}

}  // namespace quillomar
