#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "dvd/scan_results.h"
#include "retime/move_buffer.h"

namespace quillomar {

// One pack on its way from `source` to the place before `slot` (LBAs in set): the sectors `first`
// to `last` shift by `direction` and the pack ends up at `target`.
struct PackMove {
  std::uint32_t source = 0;
  std::uint32_t slot = 0;
  std::uint32_t first = 0, last = 0;  // last is below first when nothing lies between
  int direction = 0;                  // 1, -1, or 0 for a pack that stays
  std::uint32_t target = 0;

  [[nodiscard]] bool Shifts(std::uint32_t lba) const {
    return direction != 0 && lba >= first && lba <= last;
  }
};
[[nodiscard]] PackMove SetUpMove(std::uint32_t source, std::uint32_t slot);

// Index of the VOBU that an LBA in set lies in, by where the VOBUs stand now; nothing before the
// first.
[[nodiscard]] std::optional<std::size_t> VobuAt(const std::vector<VobuEntry>& vobus,
                                                std::uint32_t lba);

// Places in a VOBU for the packs at `sources`, which will be moved one after the other: each is
// the LBA to insert the pack at when its turn comes. The multiplex leaves two pack times before
// each of them. Nothing when there are not enough; all sectors of the VOBU are in the buffer.
[[nodiscard]] std::optional<std::vector<std::uint32_t>> FindSlots(
    const MoveBuffer& buffer, const VobuEntry& vobu, std::vector<std::uint32_t> sources);

// Carries a move out in the buffer: rotates the sectors, corrects the addresses in the nav packs
// and the VOBU entries, and gives the pack a clock reference one pack time after the pack before
// it. The buffer holds the VOBUs on both sides and those between.
void PerformMove(const PackMove& move, MoveBuffer& buffer, std::vector<VobuEntry>& vobus);

}  // namespace quillomar
