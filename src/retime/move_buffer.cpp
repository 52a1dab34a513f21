#include "retime/move_buffer.h"

#include <algorithm>

namespace quillomar {

Result MoveBuffer::Load(std::uint32_t first, std::uint32_t last) {
  if (count_ > 0 && Holds(first) && Holds(last)) return Result::kDone;
  if (Failed(Flush())) return Result::kFailed;
  count_ = 0;
  const std::uint32_t count = last - first + 1;
  if (last < first || count > set_.TotalSectors()) return Result::kFailed;
  bytes_.resize(std::size_t{count} * kSectorSize);
  if (Failed(set_.ReadSectors(first, count, bytes_))) return Result::kFailed;
  first_ = first;
  count_ = count;
  changed_.assign(count, false);
  return Result::kDone;
}

Result MoveBuffer::Flush() {
  if (writeFailed_) return Result::kFailed;
  std::uint32_t begin = 0;
  while (begin < count_) {
    std::uint32_t end = begin;
    while (end < count_ && changed_[end]) ++end;
    if (end == begin) {
      ++begin;
      continue;
    }
    const auto stretch = ByteSpan(bytes_).subspan(begin * kSectorSize, (end - begin) * kSectorSize);
    writeFailed_ = Failed(set_.WriteSectors(transaction_, first_ + begin, stretch));
    if (writeFailed_) return Result::kFailed;
    begin = end;
  }
  std::fill(changed_.begin(), changed_.end(), false);
  return Result::kDone;
}

SectorView MoveBuffer::At(std::uint32_t lba) const {
  return ByteSpan(bytes_).subspan((lba - first_) * kSectorSize).first<kSectorSize>();
}

std::span<std::uint8_t, kSectorSize> MoveBuffer::Edit(std::uint32_t lba) {
  changed_[lba - first_] = true;
  return std::span(bytes_).subspan((lba - first_) * kSectorSize).first<kSectorSize>();
}

void MoveBuffer::MoveSector(std::uint32_t from, std::uint32_t to) {
  const auto at = [&](std::uint32_t lba) {
    return bytes_.begin() + static_cast<std::ptrdiff_t>((lba - first_) * kSectorSize);
  };
  if (from < to) {
    std::rotate(at(from), at(from + 1), at(to + 1));
  } else {
    std::rotate(at(to), at(from), at(from + 1));
  }
  const auto [low, high] = std::minmax(from, to);
  for (std::uint32_t lba = low; lba <= high; ++lba) changed_[lba - first_] = true;
}

}  // namespace quillomar
