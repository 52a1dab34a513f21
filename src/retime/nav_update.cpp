#include "retime/nav_update.h"

#include <algorithm>
#include <cstdlib>

#include "base/format.h"
#include "dvd/big_endian.h"
#include "dvd/pack.h"
#include "retime/sync_pointers.h"

namespace quillomar {
namespace {

constexpr std::uint32_t kSingleDistance = 0x7FFFFFFF;
constexpr std::uint32_t kRunDistance = 0x3FFFFFFF;

struct SearchEntry {
  std::size_t offset;
  int direction;
  std::uint32_t distanceMask;
};

std::vector<SearchEntry> SearchEntries() {
  std::vector<SearchEntry> entries = {{kNextVideoOffset, 1, kSingleDistance}};
  for (std::size_t i = 0; i < kSearchRunLength; ++i) {
    entries.push_back({kForwardRunOffset + 4 * i, 1, kRunDistance});
  }
  entries.push_back({kNextVobuOffset, 1, kSingleDistance});
  entries.push_back({kPreviousVobuOffset, -1, kSingleDistance});
  for (std::size_t i = 0; i < kSearchRunLength; ++i) {
    entries.push_back({kBackwardRunOffset + 4 * i, -1, kRunDistance});
  }
  entries.push_back({kPreviousVideoOffset, -1, kSingleDistance});
  return entries;
}

const VobuEntry* FindScanned(const std::vector<VobuEntry>& vobus, std::int64_t startLba) {
  const auto found =
      std::lower_bound(vobus.begin(), vobus.end(), startLba,
                       [](const VobuEntry& each, std::int64_t lba) { return each.startLba < lba; });
  return found != vobus.end() && found->startLba == startLba ? &*found : nullptr;
}

void UpdateSearchEntry(Sector& sector, const VobuEntry& vobu, const SearchEntry& entry,
                       const std::vector<VobuEntry>& vobus, Reporter& reporter) {
  const std::uint32_t value = GetInt(sector, entry.offset);
  if ((value & kSearchValid) == 0 || value == kNoVideoVobu) return;
  const std::int64_t distance = value & entry.distanceMask;
  const VobuEntry* const target =
      FindScanned(vobus, std::int64_t{vobu.startLba} + distance * entry.direction);
  if (target == nullptr) {
    reporter.LogLine(Format("VOBU SRI offset corrupted at LBA %u", vobu.currentLba));
    return;
  }
  const auto now = static_cast<std::uint32_t>(
      std::abs(std::int64_t{target->currentLba} - std::int64_t{vobu.currentLba}));
  PutInt(sector, entry.offset, (value & ~entry.distanceMask) | (now & entry.distanceMask));
}

Result RefuseNavPack(const VobuEntry& vobu, const char* verb, Reporter& reporter) {
  reporter.ReportError(Format("Couldn't %s the nav pack at LBA %u\n", verb, vobu.currentLba));
  return Result::kFailed;
}

}  // namespace

Result UpdateNavPacks(std::vector<VobuEntry>& vobus, const NavChanges& changes, VobFileSet& set,
                      WriteTransaction& transaction, Reporter& reporter, JobControl& control) {
  reporter.LogLine("Updating VOBU SRI pointers");
  control.operation = Operation::kUpdatingPointers;
  const std::vector<SearchEntry> entries = SearchEntries();
  SyncPointers sync(vobus, changes, set, transaction, reporter);
  for (std::size_t i = 0; i < vobus.size(); ++i) {
    control.percent = static_cast<int>(i * 100 / vobus.size());
    VobuEntry& vobu = vobus[i];
    Sector sector;
    if (Failed(set.ReadSectors(transaction, vobu.currentLba, 1, sector))) {
      return RefuseNavPack(vobu, "read", reporter);
    }
    const Sector found = sector;
    for (const SearchEntry& entry : entries) {
      UpdateSearchEntry(sector, vobu, entry, vobus, reporter);
    }
    sync.Update(i, sector);
    vobu.searchInfo = CopySearchInfo(sector);
    if (sector == found) continue;
    if (Failed(set.WriteSectors(transaction, vobu.currentLba, sector))) {
      return RefuseNavPack(vobu, "write", reporter);
    }
  }
  return Result::kDone;
}

}  // namespace quillomar
