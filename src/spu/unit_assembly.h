#pragma once

#include <optional>
#include <span>

#include "base/result.h"
#include "spu/spu_pack.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Bytes kept free in a unit's last pack for the header of a padding stream. After a re-load one
// more is kept.
inline constexpr int kRoomReserve = kPaddingHeaderSize;
inline constexpr int kReloadRoomReserve = kPaddingHeaderSize + 1;

// The bytes of one unit as its packs bring them in, in order.
class UnitAssembly {
 public:
  // Takes the unit's size from its first pack, none of its bytes. Fails on one that does not carry
  // the unit's whole header, and on a size that has no place for it.
  Result Begin(SectorView pack);
  // Takes what the next pack carries (the first one too), at most up to the unit's size.
  void Add(SectorView pack);

  [[nodiscard]] bool Whole() const { return begun_ && bytes_.size() == size_; }
  // Bytes that the next pack would bring if it were filled to its end or to the unit's.
  [[nodiscard]] int Expected(SectorView pack) const;
  // Bytes by which the unit may grow in its packs, `reserve` bytes kept back in the last one.
  // `freedPacks` padding packs that follow the data can carry data again.
  [[nodiscard]] int FreeRoom(int reserve, int freedPacks) const;
  [[nodiscard]] const Bytes& Data() const { return bytes_; }
  [[nodiscard]] Bytes TakeData() { return std::move(bytes_); }

 private:
  Bytes bytes_;
  std::size_t size_ = 0;
  int roomLeft_ = 0;  // in the last pack that brought bytes
  bool begun_ = false;
};

// A unit put together from its packs as they stand on a disc.
struct AssembledUnit {
  UnitAssembly assembly;
  int freedPacks = 0;      // padding packs behind the data
  bool leftovers = false;  // packs behind the data that are not padding, as of a write cut short
};

// Puts packs of one unit together; nothing when they do not hold a whole unit of that sub-stream.
[[nodiscard]] std::optional<AssembledUnit> Assemble(std::span<const Sector> packs,
                                                    std::uint8_t subStreamId);

}  // namespace quillomar
