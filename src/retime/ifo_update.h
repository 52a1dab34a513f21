#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "base/reporting.h"
#include "base/transaction.h"
#include "dvd/ifo_file.h"

namespace quillomar {

// Where VOBUs stood and where they stand now; both lists end with the end LBA of the set.
struct StartLists {
  const std::vector<std::uint32_t>& before;
  const std::vector<std::uint32_t>& now;

  [[nodiscard]] std::size_t Vobus() const { return now.empty() ? 0 : now.size() - 1; }
};

struct MappedSector {
  std::uint32_t sector = 0;
  bool exact = false;  // the sector asked for was a start
};
// The new place of the first of `count` starts that was at `sector` or later and is now beyond
// `above`; the last one where there is none.
[[nodiscard]] MappedSector MapSector(const StartLists& starts, std::size_t count,
                                     std::int64_t sector, std::int64_t above);

// Brings the IFO of a title set in line with moved VOBUs: cells, VOBU address map, cell address
// table and time maps, then writes it with its backup. Leaves it untouched where no VOBU has moved.
// Fails when it could not be written; the image in memory is then changed all the same.
Result UpdateIfo(IfoFile& ifo, const StartLists& starts, WriteTransaction& transaction,
                 Reporter& reporter);

// The same for the VOBU address map alone: lists the VOBUs' starts, moving what follows the map by
// whole sectors where the map needs more or fewer of them. Fails when the image has no room left.
Result RebuildVobuMap(IfoFile& ifo, const StartLists& starts);

}  // namespace quillomar
