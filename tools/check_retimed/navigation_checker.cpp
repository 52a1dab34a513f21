#include <algorithm>
#include <set>

#include "base/format.h"
#include "check_retimed/checkers.h"

namespace quillomar::check {
namespace {

constexpr std::uint32_t kBackward = 0x80000000;

class NavigationChecker {
 public:
  NavigationChecker(const DiscModel& now, const DiscModel& before) : now_(now), before_(before) {}

  Faults Run() {
    Expect(now_.ifoParsed, "the IFO cannot be parsed", 0);
    Expect(now_.backupEqual, "the backup differs from the IFO", 0);
    Expect(now_.addressMap == now_.navs, "the address map does not list the nav packs", 0);
    if (now_.navs.size() != before_.navs.size() || now_.statics.size() != before_.statics.size()) {
      faults_.push_back("packs are lost or new");
      return faults_;
    }
    for (std::size_t i = 0; i < now_.navs.size(); ++i) {
      CheckOwnAddresses(i);
      CheckSearchPointers(i);
      CheckAudio(i);
      for (int stream = 0; stream < 32; ++stream) CheckSubpicture(i, stream);
    }
    CheckTables();
    return faults_;
  }

 private:
  void Expect(bool holds, const char* what, std::size_t where) {
    if (!holds) faults_.push_back(Format("%s (%d)", what, static_cast<int>(where)));
  }

  // Where a sector of the untouched disc stands now; -1 for a subpicture pack.
  [[nodiscard]] std::int64_t Place(std::uint32_t lba) const {
    const auto rank = before_.rankOf.find(lba);
    return rank == before_.rankOf.end() ? -1 : now_.statics[rank->second];
  }

  void CheckOwnAddresses(std::size_t i) {
    const std::uint32_t nav = now_.navs[i];
    const dsi_gi_t& is = now_.dsis[i].dsi_gi;
    const dsi_gi_t& was = before_.dsis[i].dsi_gi;
    Expect(is.nv_pck_lbn == nav && now_.pcis[i].pci_gi.nv_pck_lbn == nav, "own address", i);
    const std::uint32_t next = i + 1 < now_.navs.size() ? now_.navs[i + 1] : now_.Sectors();
    Expect(nav + is.vobu_ea + 1 == next, "end address", i);
    const auto end = [&](std::uint32_t now, std::uint32_t old) {
      Expect(Place(before_.navs[i] + old) == nav + now, "end of a reference frame", i);
    };
    end(is.vobu_1stref_ea, was.vobu_1stref_ea);
    end(is.vobu_2ndref_ea, was.vobu_2ndref_ea);
    end(is.vobu_3rdref_ea, was.vobu_3rdref_ea);
  }

  void CheckSearchPointer(std::size_t i, std::uint32_t is, std::uint32_t was, int direction,
                          std::uint32_t mask) {
    const bool valid = (was & kBackward) != 0 && was != 0xBFFFFFFF;
    const int target =
        valid ? before_.VobuAtStart(before_.navs[i] + std::int64_t{was & mask} * direction) : -1;
    const std::int64_t lands = now_.navs[i] + std::int64_t{is & mask} * direction;
    const bool right =
        target < 0 ? is == was : now_.VobuAtStart(lands) == target && (is & ~mask) == (was & ~mask);
    Expect(right, "search pointer", i);
  }

  void CheckSearchPointers(std::size_t i) {
    constexpr std::uint32_t kSingle = 0x7FFFFFFF;
    constexpr std::uint32_t kRun = 0x3FFFFFFF;
    const vobu_sri_t& is = now_.dsis[i].vobu_sri;
    const vobu_sri_t& was = before_.dsis[i].vobu_sri;
    CheckSearchPointer(i, is.next_video, was.next_video, 1, kSingle);
    CheckSearchPointer(i, is.next_vobu, was.next_vobu, 1, kSingle);
    CheckSearchPointer(i, is.prev_vobu, was.prev_vobu, -1, kSingle);
    CheckSearchPointer(i, is.prev_video, was.prev_video, -1, kSingle);
    for (int k = 0; k < 19; ++k) {
      CheckSearchPointer(i, is.fwda[k], was.fwda[k], 1, kRun);
      CheckSearchPointer(i, is.bwda[k], was.bwda[k], -1, kRun);
    }
  }

  void CheckAudio(std::size_t i) {
    for (int k = 0; k < 8; ++k) {
      const std::uint32_t is = now_.dsis[i].synci.a_synca[k];
      const std::uint32_t was = before_.dsis[i].synci.a_synca[k];
      const std::int64_t target =
          was == 0 || (was & 0x3FFF) == 0x3FFF ? -1 : Place(Leads(before_.navs[i], was));
      const bool right = target < 0 ? is == was : Leads(now_.navs[i], is) == target;
      Expect(right, "audio synchronisation", i);
    }
  }

  static std::uint32_t Leads(std::uint32_t nav, std::uint32_t pointer) {
    return (pointer & 0x8000) != 0 ? nav - (pointer & 0x7FFF) : nav + (pointer & 0x7FFF);
  }

  // The pointer to the VOBU of the first unit that is on screen while VOBU i plays. A unit goes
  // when the next one comes.
  static std::uint32_t Shown(const DiscModel& disc, std::size_t i, int stream) {
    const pci_gi_t& vobu = disc.pcis[i].pci_gi;
    std::vector<const UnitOnDisc*> near;
    for (const UnitOnDisc& unit : disc.units) {
      if (unit.stream == stream && disc.RunsOn(i, unit.vobu)) near.push_back(&unit);
    }
    std::stable_sort(near.begin(), near.end(),
                     [](const UnitOnDisc* a, const UnitOnDisc* b) { return a->start < b->start; });
    const UnitOnDisc* first = nullptr;
    for (std::size_t k = 0; k < near.size() && first == nullptr; ++k) {
      const std::int64_t next = k + 1 < near.size() ? near[k + 1]->start : near[k]->end;
      const bool ended = std::min(near[k]->end, next) <= vobu.vobu_s_ptm;
      if (!ended && near[k]->start < vobu.vobu_e_ptm) first = near[k];
    }
    if (first == nullptr || first->vobu == i) return 0x7FFFFFFF;
    const std::int64_t distance = std::int64_t{disc.navs[first->vobu]} - disc.navs[i];
    return distance < 0 ? kBackward | static_cast<std::uint32_t>(-distance)
                        : static_cast<std::uint32_t>(distance);
  }

  void CheckSubpicture(std::size_t i, int stream) {
    const std::uint32_t is = now_.dsis[i].synci.sp_synca[stream];
    const std::uint32_t was = before_.dsis[i].synci.sp_synca[stream];
    const auto normal = [](std::uint32_t value) { return value == 0 ? 0x7FFFFFFF : value; };
    const bool wasRight = normal(was) == Shown(before_, i, stream);
    const bool right = normal(is) == Shown(now_, i, stream);
    Expect(right || (!wasRight && is == was), "subpicture synchronisation", i);
  }

  // A sector that was `past` sectors before a nav pack still is.
  void CheckSector(std::uint32_t is, std::uint32_t was, std::uint32_t past, const char* what,
                   std::size_t where) {
    const std::uint32_t old = was + past;
    const bool atEnd = old == before_.Sectors();
    const int vobu = before_.VobuAtStart(old);
    if (vobu < 0 && !atEnd) return;
    Expect(is + past == (atEnd ? now_.Sectors() : now_.navs[static_cast<std::size_t>(vobu)]), what,
           where);
  }

  void CheckTables() {
    const bool sameShape = now_.cells.size() == before_.cells.size() &&
                           now_.cellAddresses.size() == before_.cellAddresses.size() &&
                           now_.timeMap.size() == before_.timeMap.size();
    Expect(sameShape, "tables of the IFO have another size", 0);
    if (!sameShape) return;
    std::set<std::vector<std::uint32_t>> addresses;
    for (std::size_t i = 0; i < now_.cellAddresses.size(); ++i) {
      const auto& is = now_.cellAddresses[i];
      const auto& was = before_.cellAddresses[i];
      CheckSector(is[2], was[2], 0, "cell address start", i);
      CheckSector(is[3], was[3], 1, "cell address end", i);
      addresses.insert(is);
    }
    for (std::size_t i = 0; i < now_.cells.size(); ++i) {
      const auto& is = now_.cells[i];
      const auto& was = before_.cells[i];
      CheckSector(is[2], was[2], 0, "cell start", i);
      CheckSector(is[3], was[3], 0, "cell's last VOBU", i);
      CheckSector(is[4], was[4], 1, "cell end", i);
      Expect(addresses.count({is[0], is[1], is[2], is[4]}) == 1, "cell and its address disagree",
             i);
    }
    for (std::size_t i = 0; i < now_.timeMap.size(); ++i) {
      CheckSector(now_.timeMap[i], before_.timeMap[i], 0, "time map", i);
    }
  }

  const DiscModel& now_;
  const DiscModel& before_;
  Faults faults_;
};

}  // namespace

Faults CheckNavigation(const DiscModel& disc, const DiscModel& untouched) {
  return NavigationChecker(disc, untouched).Run();
}

}  // namespace quillomar::check
