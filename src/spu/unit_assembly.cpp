#include "spu/unit_assembly.h"

#include <algorithm>

#include "dvd/big_endian.h"

namespace quillomar {

Result UnitAssembly::Begin(SectorView pack) {
  const ByteSpan payload = SpuBytes(pack);
  if (payload.size() < kSpuHeaderSize) return Result::kFailed;
  size_ = GetShort(payload, kSpuSizeOffset);
  if (size_ < kSpuHeaderSize) return Result::kFailed;
  bytes_.clear();
  bytes_.reserve(size_);
  begun_ = true;
  return Result::kDone;
}

void UnitAssembly::Add(SectorView pack) {
  const ByteSpan payload = SpuBytes(pack);
  const std::size_t count = std::min(payload.size(), size_ - bytes_.size());
  const ByteSpan taken = payload.first(count);
  bytes_.insert(bytes_.end(), taken.begin(), taken.end());
  roomLeft_ = PackRoom(HeaderDataLength(pack)) - static_cast<int>(count);
}

int UnitAssembly::Expected(SectorView pack) const {
  return std::min(PackRoom(HeaderDataLength(pack)), static_cast<int>(size_ - bytes_.size()));
}

int UnitAssembly::FreeRoom(int reserve, int freedPacks) const {
  return std::max(roomLeft_ + freedPacks * kMaxPackRoom - reserve, 0);
}

std::optional<AssembledUnit> Assemble(std::span<const Sector> packs, std::uint8_t subStreamId) {
  AssembledUnit unit;
  bool begun = false;
  for (const Sector& pack : packs) {
    if (IsPaddingPack(pack)) {
      if (unit.assembly.Whole()) ++unit.freedPacks;
      continue;
    }
    if (!IsPackOfStream(pack, subStreamId)) return std::nullopt;
    if (unit.assembly.Whole()) {
      unit.leftovers = true;
      continue;
    }
    if (!begun && (!HasTimeStamp(pack) || Failed(unit.assembly.Begin(pack)))) return std::nullopt;
    begun = true;
    unit.assembly.Add(pack);
  }
  if (!unit.assembly.Whole()) return std::nullopt;
  return unit;
}

}  // namespace quillomar
