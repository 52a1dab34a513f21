// The VOBU address map of an IFO, rebuilt.

#include <algorithm>
#include <array>

#include "dvd/big_endian.h"
#include "dvd/ifo_layout.h"
#include "dvd/sector.h"
#include "retime/ifo_update.h"

namespace quillomar {
namespace {

// Header pointers to tables, in sectors of the IFO.
constexpr std::array kSectorPointers = {
    kIfoMenuUnitsOffset, kIfoTitleChainsOffset, kIfoAttributesOffset, kIfoTimeMapOffset,
    kIfoMenuCellsOffset, kIfoMenuVobusOffset,   kIfoTitleCellsOffset, kIfoTitleVobusOffset,
};

constexpr std::size_t kEntrySize = 4;
// The end address counts from the map's start and names its last byte.
constexpr std::size_t EndOf(std::size_t entries) {
  return entries * kEntrySize + kVobuMapEntriesOffset - 1;
}

std::vector<std::uint32_t> DistinctStarts(const StartLists& starts) {
  std::vector<std::uint32_t> entries = starts.now;
  entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
  if (!entries.empty()) entries.pop_back();
  return entries;
}

// Moves everything behind sector `last` of the image by a number of sectors.
Result MoveTables(IfoFile& ifo, std::size_t mapSector, std::size_t last, std::ptrdiff_t sectors) {
  const std::size_t oldSize = std::size_t{ifo.SizeKib()} * kKib;
  const std::size_t begin = (last + 1) * kSectorSize;
  const std::ptrdiff_t distance = sectors * static_cast<std::ptrdiff_t>(kSectorSize);
  const std::ptrdiff_t newSize = static_cast<std::ptrdiff_t>(oldSize) + distance;
  if (begin > oldSize || newSize <= 0) return Result::kFailed;
  const auto newKib = static_cast<std::uint32_t>(newSize / static_cast<std::ptrdiff_t>(kKib));
  if (Failed(ifo.SetSizeKib(newKib))) return Result::kFailed;
  const auto image = ifo.Image();
  const auto at = [&](std::size_t position) {
    return image.begin() + static_cast<std::ptrdiff_t>(position);
  };
  if (distance > 0) {
    std::move_backward(at(begin), at(oldSize), at(oldSize) + distance);
    std::fill(at(begin), at(begin) + distance, std::uint8_t{0});
  } else {
    std::move(at(begin), at(oldSize), at(begin) + distance);
    std::fill(at(oldSize) + distance, at(oldSize), std::uint8_t{0});
  }
  for (const std::size_t pointer : kSectorPointers) {
    if (ifo.GetInt(0, pointer) <= mapSector) continue;
    ifo.AddInt(0, pointer, static_cast<std::uint32_t>(sectors));
  }
  ifo.AddInt(0, kIfoEndSectorOffset, static_cast<std::uint32_t>(sectors));
  return Result::kDone;
}

}  // namespace

Result RebuildVobuMap(IfoFile& ifo, const StartLists& starts) {
  const auto map = ifo.Table(IfoTable::kTitleVobus);
  const auto last = ifo.TableEnd(IfoTable::kTitleVobus);
  if (!map || !last) return Result::kDone;
  const std::vector<std::uint32_t> entries = DistinctStarts(starts);
  const std::size_t oldEntries = (*last - *map) / kEntrySize;
  for (std::size_t i = entries.size(); i < oldEntries; ++i) {
    ifo.PutInt(*map, kVobuMapEntriesOffset + i * kEntrySize, 0);
  }
  const std::size_t end = *map + EndOf(entries.size());
  const auto sectors = static_cast<std::ptrdiff_t>(end / kSectorSize) -
                       static_cast<std::ptrdiff_t>(*last / kSectorSize);
  if (sectors != 0 && Failed(MoveTables(ifo, *map / kSectorSize, *last / kSectorSize, sectors))) {
    return Result::kFailed;
  }
  if (entries.empty()) {
    ifo.PutInt(0, kIfoTitleVobusOffset, 0);
    return Result::kDone;
  }
  // The checked accessor would refuse an entry that ends on the image's last byte, as the last one
  // of a map that fills its sector does.
  for (std::size_t i = 0; i < entries.size(); ++i) {
    PutInt(ifo.Image(), *map + kVobuMapEntriesOffset + i * kEntrySize, entries[i]);
  }
  ifo.PutInt(*map, kVobuMapEndOffset, static_cast<std::uint32_t>(EndOf(entries.size())));
  return Result::kDone;
}

}  // namespace quillomar
