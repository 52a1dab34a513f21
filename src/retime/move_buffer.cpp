#include "retime/move_buffer.h"

#include <algorithm>

namespace quillomar {

Result MoveBuffer::Load(std::uint32_t first, std::uint32_t last) {
  if (Holds(first) && Holds(last)) return Result::kDone;
  const std::uint32_t count = last - first + 1;
  if (last < first || count > set_.TotalSectors()) return Result::kFailed;
  // Neighbouring runs overlap for the most part: what both hold stays in memory as it is.
  const std::uint32_t keepBegin = std::clamp(first_, first, first + count);
  const std::uint32_t keepEnd = std::clamp(first_ + count_, keepBegin, first + count);
  if (Failed(WriteChanged(first_, keepBegin)) || Failed(WriteChanged(keepEnd, first_ + count_))) {
    return Result::kFailed;
  }
  std::vector<std::uint8_t> bytes(std::size_t{count} * kSectorSize);
  const auto read = [&](std::uint32_t begin, std::uint32_t end) {
    const auto out = std::span(bytes).subspan((begin - first) * kSectorSize);
    return begin == end ? Result::kDone : set_.ReadSectors(begin, end - begin, out);
  };
  if (Failed(read(first, keepBegin)) || Failed(read(keepEnd, first + count))) {
    return Result::kFailed;
  }
  std::vector<bool> changed(count, false);
  for (std::uint32_t lba = keepBegin; lba < keepEnd; ++lba) {
    const SectorView kept = At(lba);
    std::copy(kept.begin(), kept.end(), bytes.data() + (lba - first) * kSectorSize);
    changed[lba - first] = changed_[lba - first_];
  }
  bytes_ = std::move(bytes);
  changed_ = std::move(changed);
  first_ = first;
  count_ = count;
  return Result::kDone;
}

Result MoveBuffer::Flush() {
  return WriteChanged(first_, first_ + count_);
}

Result MoveBuffer::WriteChanged(std::uint32_t begin, std::uint32_t end) {
  if (writeFailed_) return Result::kFailed;
  begin = std::max(begin, first_);
  end = std::min(end, first_ + count_);
  while (begin < end) {
    std::uint32_t stop = begin;
    while (stop < end && changed_[stop - first_]) changed_[stop++ - first_] = false;
    if (stop == begin) {
      ++begin;
      continue;
    }
    const auto stretch =
        ByteSpan(bytes_).subspan((begin - first_) * kSectorSize, (stop - begin) * kSectorSize);
    writeFailed_ = Failed(set_.WriteSectors(transaction_, begin, stretch));
    if (writeFailed_) return Result::kFailed;
    begin = stop;
  }
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
  // By way of a copy: the standard rotation goes byte by byte.
  Sector moved;
  std::copy(at(from), at(from + 1), moved.begin());
  if (from < to) {
    std::copy(at(from + 1), at(to + 1), at(from));
  } else {
    std::copy_backward(at(to), at(from), at(from + 1));
  }
  std::copy(moved.begin(), moved.end(), at(to));
  const auto [low, high] = std::minmax(from, to);
  for (std::uint32_t lba = low; lba <= high; ++lba) changed_[lba - first_] = true;
}

}  // namespace quillomar
