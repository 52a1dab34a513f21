#pragma once

#include <cstdint>
#include <optional>

#include "dvd/sector.h"
#include "video/disc_reader.h"

namespace quillomar {

// A VOBU as its own nav pack tells it.
struct VobuMark {
  std::uint32_t lba = 0;        // LBA in set of the nav pack
  std::uint32_t startTime = 0;  // 90 kHz
  std::uint32_t endTime = 0;    // 90 kHz
  Vcid vcid;
  std::optional<std::uint32_t> next;      // sectors to the next VOBU; nothing where it names none
  std::optional<std::uint32_t> previous;  // sectors back to the one before
};

// Ticks from `from` to `to` on a clock that wraps at 32 bits.
inline std::int32_t TicksBetween(std::uint32_t from, std::uint32_t to) {
  return static_cast<std::int32_t>(to - from);
}

// Steps from VOBU to VOBU by the pointers in the nav packs. Where one is missing or leads astray,
// looks through the neighbouring sectors, a few thousand at most.
class VobuWalk {
 public:
  explicit VobuWalk(DiscReader& reader) : reader_(reader) {}

  // The VOBU in which a sector lies.
  [[nodiscard]] std::optional<VobuMark> At(std::uint32_t lba);
  // Neighbours on the same clock: of the same VOB, with times that go on.
  [[nodiscard]] std::optional<VobuMark> NextInVob(const VobuMark& vobu);
  [[nodiscard]] std::optional<VobuMark> PreviousInVob(const VobuMark& vobu);
  // Neighbours on the disc, whatever they belong to.
  [[nodiscard]] std::optional<VobuMark> After(std::uint32_t lba);
  [[nodiscard]] std::optional<VobuMark> Before(std::uint32_t lba);

 private:
  [[nodiscard]] std::optional<VobuMark> MarkAt(std::uint32_t lba);

  DiscReader& reader_;
};

}  // namespace quillomar
