#include "retime/ifo_update.h"

#include <algorithm>

#include "base/format.h"
#include "dvd/ifo_layout.h"
#include "dvd/sector.h"

namespace quillomar {
namespace {

// The new place of a sector that was a start; nothing for any other.
std::optional<std::uint32_t> ExactPlace(const StartLists& starts, std::uint32_t sector) {
  const auto found = std::lower_bound(starts.before.begin(), starts.before.end(), sector);
  if (found == starts.before.end() || *found != sector) return std::nullopt;
  return starts.now[static_cast<std::size_t>(found - starts.before.begin())];
}

// Patches the sectors of the title domain's cells.
class CellRepair {
 public:
  CellRepair(IfoFile& ifo, const StartLists& starts, Reporter& reporter)
      : ifo_(ifo), starts_(starts), reporter_(reporter) {}

  void Run() {
    for (int chain = 1; chain <= ifo_.ProgramChains(0); ++chain) {
      const auto position = ifo_.ProgramChain(0, chain);
      if (!position) continue;
      for (int cell = 1; cell <= ifo_.Cells(*position); ++cell) {
        ++cellNumber_;
        const auto entry = ifo_.CellPlayback(*position, cell);
        // Several search pointers may lead to one chain.
        if (entry && done_.insert(*entry).second) Patch(*entry, chain);
      }
    }
  }

 private:
  void Patch(std::size_t entry, int chain) {
    chain_ = chain;
    const std::size_t vobus = starts_.Vobus();
    PatchField(entry, kCellFirstVobuOffset, vobus, 0, -1, "entry sector");
    PatchField(entry, kCellLastVobuOffset, vobus, 0, -1, "last VOBU start LBA");
    const std::int64_t lastStart = Get(entry, kCellLastVobuOffset);
    PatchField(entry, kCellLastVobuEndOffset, vobus + 1, 1, lastStart, "last VOBU end LBA + 1");
    PatchField(entry, kCellFirstIlvuEndOffset, vobus + 1, 1, -1, "first ILVU end LBA");
  }

  std::int64_t Get(std::size_t entry, std::size_t field) {
    return static_cast<std::int32_t>(ifo_.GetInt(entry, field));
  }

  // `past`: 1 for a field that names the last sector before a start, 0 for a start itself.
  void PatchField(std::size_t entry, std::size_t field, std::size_t count, int past,
                  std::int64_t above, const char* name) {
    const std::int64_t value = Get(entry, field);
    if (past == 1 && value <= 0 && (value == 0 || field == kCellFirstIlvuEndOffset)) return;
    const MappedSector mapped = MapSector(starts_, count, value + past, above);
    if (!mapped.exact) {
      reporter_.LogLine(Format("PGC %d - Cell %d, Original %s didn't point to a navpack. Fixed",
                               chain_, cellNumber_, name));
    }
    ifo_.PutInt(entry, field, mapped.sector - static_cast<std::uint32_t>(past));
  }

  IfoFile& ifo_;
  const StartLists& starts_;
  Reporter& reporter_;
  std::set<std::size_t> done_;
  int chain_ = 0;
  int cellNumber_ = 0;
};

void PatchCellAddresses(IfoFile& ifo, const StartLists& starts) {
  const auto table = ifo.Table(IfoTable::kTitleCells);
  const auto last = ifo.TableEnd(IfoTable::kTitleCells);
  if (!table || !last) return;
  for (std::size_t entry = *table + kCellAddressesOffset; entry + kCellAddressSize <= *last + 1;
       entry += kCellAddressSize) {
    const auto start = ExactPlace(starts, ifo.GetInt(entry, kCellAddressStartOffset));
    if (start) ifo.PutInt(entry, kCellAddressStartOffset, *start);
    const auto end = ExactPlace(starts, ifo.GetInt(entry, kCellAddressEndOffset) + 1);
    if (end) ifo.PutInt(entry, kCellAddressEndOffset, *end - 1);
  }
}

void PatchTimeMap(IfoFile& ifo, const StartLists& starts, std::size_t map, int number,
                  std::size_t last, Reporter& reporter) {
  const int count = ifo.GetShort(map, kMapEntryCountOffset);
  for (int i = 0; i < count; ++i) {
    const std::size_t entry = map + kMapEntriesOffset + static_cast<std::size_t>(i) * 4;
    if (entry + 3 > last) return;
    const std::uint32_t value = ifo.GetInt(entry, 0);
    const auto place = ExactPlace(starts, value & ~kMapEntryFlag);
    if (place) {
      ifo.PutInt(entry, 0, (value & kMapEntryFlag) | *place);
    } else {
      reporter.LogLine(Format("Time map %d - Entry %d didn't point to a navpack. Left as it was",
                              number, i + 1));
    }
  }
}

void PatchTimeMaps(IfoFile& ifo, const StartLists& starts, Reporter& reporter) {
  const auto table = ifo.Table(IfoTable::kTimeMap);
  const auto last = ifo.TableEnd(IfoTable::kTimeMap);
  if (!table || !last) return;
  const int count = ifo.GetShort(*table, kTimeMapCountOffset);
  std::set<std::size_t> done;
  for (int i = 0; i < count; ++i) {
    const std::size_t pointer = *table + kTimeMapOffsetsOffset + static_cast<std::size_t>(i) * 4;
    if (pointer + 3 > *last) return;
    const std::size_t map = *table + ifo.GetInt(pointer, 0);
    if (map + kMapEntriesOffset > *last || !done.insert(map).second) continue;
    PatchTimeMap(ifo, starts, map, i + 1, *last, reporter);
  }
}

}  // namespace

MappedSector MapSector(const StartLists& starts, std::size_t count, std::int64_t sector,
                       std::int64_t above) {
  if (count == 0) return {};
  const auto end = starts.before.begin() + static_cast<std::ptrdiff_t>(count);
  const auto found = std::lower_bound(starts.before.begin(), end, sector);
  for (auto slot = static_cast<std::size_t>(found - starts.before.begin()); slot < count; ++slot) {
    if (starts.now[slot] > above) return {starts.now[slot], starts.before[slot] == sector};
  }
  return {starts.now[count - 1], false};
}

Result UpdateIfo(IfoFile& ifo, const StartLists& starts, WriteTransaction& transaction,
                 Reporter& reporter) {
  reporter.LogLine("Updating IFO");
  if (starts.before == starts.now || !ifo.Loaded() || ifo.IsManager()) return Result::kDone;
  CellRepair(ifo, starts, reporter).Run();
  Result result = RebuildVobuMap(ifo, starts);
  if (!Failed(result)) {
    PatchCellAddresses(ifo, starts);
    PatchTimeMaps(ifo, starts, reporter);
    result = ifo.Write(transaction);
  }
  if (Failed(result)) {
    reporter.ReportError(Format("Couldn't update %s or its backup\n", ifo.Path().c_str()));
  }
  return result;
}

}  // namespace quillomar
