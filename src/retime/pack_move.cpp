#include "retime/pack_move.h"

#include <algorithm>

#include "dvd/big_endian.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"
#include "dvd/vobu_tracker.h"
#include "retime/clock.h"

namespace quillomar {
namespace {

// The clock references of a VOBU's packs, on which a series of moves can be tried.
class SlotSearch {
 public:
  SlotSearch(const MoveBuffer& buffer, const VobuEntry& vobu) : nav_(vobu.currentLba) {
    for (std::uint32_t i = 0; i < vobu.length; ++i) {
      clocks_.push_back(GetClockReference(buffer.At(nav_ + i)));
    }
  }

  [[nodiscard]] std::optional<std::uint32_t> Find(std::uint32_t start) const {
    for (std::size_t i = std::max(start, nav_) - nav_ + 1; i < clocks_.size(); ++i) {
      if (!IsBefore(clocks_[i], PacksLater(clocks_[i - 1], 2))) {
        return nav_ + static_cast<std::uint32_t>(i);
      }
    }
    return std::nullopt;
  }

  void Try(const PackMove& move) {
    if (move.source >= nav_ && move.source - nav_ < clocks_.size()) Erase(move.source - nav_);
    if (move.source < nav_) --nav_;
    const std::uint32_t index = move.target - nav_;
    clocks_.insert(At(index), PacksLater(clocks_[index - 1], 1));
  }

 private:
  std::vector<ClockReference>::iterator At(std::uint32_t index) { return clocks_.begin() + index; }
  void Erase(std::uint32_t index) { clocks_.erase(At(index)); }

  std::uint32_t nav_;
  std::vector<ClockReference> clocks_;
};

// One pack more (1) or less (-1) before what stands at `place`.
void AdjustLength(VobuEntry& vobu, std::uint32_t place, int change, MoveBuffer& buffer) {
  const auto nav = buffer.Edit(vobu.currentLba);
  const auto delta = static_cast<std::uint32_t>(change);
  AddInt(nav, kVobuEndOffset, delta);
  for (int i = 0; i < kReferenceEnds; ++i) {
    const std::size_t field = kReferenceEndsOffset + static_cast<std::size_t>(i) * 4;
    if (GetInt(nav, field) >= place - vobu.currentLba) AddInt(nav, field, delta);
  }
  vobu.length += delta;
}

// The last VOBU, whose room nobody knows, stays without any.
void RecountFreeSlots(std::size_t index, const MoveBuffer& buffer, std::vector<VobuEntry>& vobus) {
  if (index + 1 >= vobus.size() || !buffer.Holds(vobus[index + 1].currentLba)) return;
  const auto clockOf = [&](const VobuEntry& vobu) {
    return GetClockReference(buffer.At(vobu.currentLba)).base;
  };
  VobuEntry& vobu = vobus[index];
  vobu.freeSlots = FreePackSlots(clockOf(vobu), clockOf(vobus[index + 1]), vobu.length);
}

void AdjustLengths(const PackMove& move, MoveBuffer& buffer, std::vector<VobuEntry>& vobus) {
  const auto gaining = VobuAt(vobus, move.slot);
  const auto losing = VobuAt(vobus, move.source);
  if (!gaining || !losing) return;
  AdjustLength(vobus[*gaining], move.slot, 1, buffer);
  // Inside one VOBU, a pack put in before the source has pushed it one sector on.
  const bool pushed = gaining == losing && move.slot < move.source;
  AdjustLength(vobus[*losing], move.source + (pushed ? 1 : 0), -1, buffer);
  RecountFreeSlots(*gaining, buffer, vobus);
  RecountFreeSlots(*losing, buffer, vobus);
}

void ShiftVobus(const PackMove& move, MoveBuffer& buffer, std::vector<VobuEntry>& vobus) {
  const auto delta = static_cast<std::uint32_t>(move.direction);
  auto entry = std::lower_bound(
      vobus.begin(), vobus.end(), move.first,
      [](const VobuEntry& each, std::uint32_t lba) { return each.currentLba < lba; });
  for (; entry != vobus.end() && move.Shifts(entry->currentLba); ++entry) {
    const auto nav = buffer.Edit(entry->currentLba);
    AddInt(nav, kNavLbaOffset, delta);
    AddInt(nav, kDsiLbaOffset, delta);
    entry->currentLba += delta;
  }
}

}  // namespace

PackMove SetUpMove(std::uint32_t source, std::uint32_t slot) {
  if (slot < source) return {source, slot, slot, source - 1, 1, slot};
  if (slot > source) return {source, slot, source + 1, slot - 1, -1, slot - 1};
  return {source, slot, source, source, 0, source};
}

std::optional<std::size_t> VobuAt(const std::vector<VobuEntry>& vobus, std::uint32_t lba) {
  const auto after = std::upper_bound(
      vobus.begin(), vobus.end(), lba,
      [](std::uint32_t value, const VobuEntry& each) { return value < each.currentLba; });
  if (after == vobus.begin()) return std::nullopt;
  return static_cast<std::size_t>(after - vobus.begin()) - 1;
}

std::optional<std::vector<std::uint32_t>> FindSlots(const MoveBuffer& buffer, const VobuEntry& vobu,
                                                    std::vector<std::uint32_t> sources) {
  SlotSearch search(buffer, vobu);
  std::vector<std::uint32_t> slots;
  std::uint32_t start = vobu.currentLba;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const auto slot = search.Find(start);
    if (!slot) return std::nullopt;
    const PackMove move = SetUpMove(sources[i], *slot);
    search.Try(move);
    for (std::size_t k = i + 1; k < sources.size(); ++k) {
      if (move.Shifts(sources[k])) sources[k] += static_cast<std::uint32_t>(move.direction);
    }
    slots.push_back(*slot);
    start = *slot + 1;
  }
  return slots;
}

void PerformMove(const PackMove& move, MoveBuffer& buffer, std::vector<VobuEntry>& vobus) {
  if (move.direction != 0) {
    AdjustLengths(move, buffer, vobus);
    ShiftVobus(move, buffer, vobus);
    if (move.target != move.source) buffer.MoveSector(move.source, move.target);
  }
  const ClockReference before = GetClockReference(buffer.At(move.target - 1));
  PutClockReference(buffer.Edit(move.target), PacksLater(before, 1));
}

}  // namespace quillomar
