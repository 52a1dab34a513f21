#include <algorithm>

#include "base/format.h"
#include "check_retimed/checkers.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"

namespace quillomar::check {
namespace {

using SectorBytes = std::vector<std::uint8_t>;

bool ClockGoesBack(const DiscModel& disc, std::uint32_t lba) {
  const auto clock = [&](std::uint32_t at) {
    const ClockReference found = GetClockReference(disc.Sector(at).first<kSectorSize>());
    return std::pair(found.base, found.extension);
  };
  return clock(lba) < clock(lba - 1);
}

// A nav pack without the fields that may follow the packs, any other sector whole.
SectorBytes Comparable(const DiscModel& disc, std::uint32_t lba) {
  SectorBytes bytes(disc.Sector(lba).begin(), disc.Sector(lba).end());
  if (disc.VobuAtStart(lba) < 0) return bytes;
  const auto clear = [&](std::size_t from, std::size_t to) {
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(from),
              bytes.begin() + static_cast<std::ptrdiff_t>(to), std::uint8_t{0});
  };
  clear(kNavLbaOffset, kNavLbaOffset + 4);
  clear(kDsiLbaOffset, kReferenceEndsOffset + 12);
  clear(kNavSearchInfoOffset, kSubpictureSyncOffset + 4 * 32);
  return bytes;
}

// The packs of all units without clock references and time stamps.
std::vector<SectorBytes> UnitPacks(const DiscModel& disc) {
  std::vector<SectorBytes> all;
  for (const UnitOnDisc& unit : disc.units) {
    SectorBytes joined;
    for (const std::uint32_t lba : unit.lbas) {
      SectorBytes bytes(kSectorSize);
      std::copy_n(disc.Sector(lba).begin(), kSectorSize, bytes.begin());
      std::fill_n(bytes.begin() + kClockReferenceOffset, kClockReferenceSize, std::uint8_t{0});
      if (lba == unit.lbas.front()) {
        std::fill_n(bytes.begin() + kPesHeaderDataOffset, kTimeStampSize, std::uint8_t{0});
      }
      joined.insert(joined.end(), bytes.begin(), bytes.end());
    }
    all.push_back(std::move(joined));
  }
  std::sort(all.begin(), all.end());
  return all;
}

}  // namespace

Faults CheckMux(const DiscModel& disc, const DiscModel& untouched) {
  Faults faults;
  if (disc.fileSizes != untouched.fileSizes) faults.emplace_back("file sizes");
  std::size_t vobu = 0;
  for (std::uint32_t lba = 1; lba < disc.Sectors(); ++lba) {
    bool newVob = false;
    if (vobu + 1 < disc.navs.size() && disc.navs[vobu + 1] == lba) {
      ++vobu;
      newVob = disc.dsis[vobu].dsi_gi.vobu_vob_idn != disc.dsis[vobu - 1].dsi_gi.vobu_vob_idn;
    }
    if (!newVob && ClockGoesBack(disc, lba)) {
      faults.push_back(Format("the clock goes back at %u", lba));
    }
  }
  if (disc.statics.size() != untouched.statics.size()) {
    faults.emplace_back("packs are lost or new");
    return faults;
  }
  for (std::size_t i = 0; i < disc.statics.size(); ++i) {
    if (Comparable(disc, disc.statics[i]) != Comparable(untouched, untouched.statics[i])) {
      faults.push_back(Format("other bytes at %u", disc.statics[i]));
    }
  }
  if (UnitPacks(disc) != UnitPacks(untouched)) faults.emplace_back("other bytes in a unit");
  return faults;
}

}  // namespace quillomar::check
