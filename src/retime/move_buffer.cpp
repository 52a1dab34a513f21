#include "retime/move_buffer.h"

#include <algorithm>

namespace quillomar {

Result MoveBuffer::Load(std::uint32_t first, std::uint32_t last) {
  if (Holds(first) && Holds(last)) return Result::kDone;
  if (last < first || last - first >= set_.TotalSectors()) return Result::kFailed;
  const std::uint32_t end = last + 1;
  // Neighbouring runs overlap for the most part: what both hold stays in memory.
  const std::uint32_t keepBegin = std::clamp(first_, first, end);
  const std::uint32_t keepEnd = std::clamp(End(), keepBegin, end);
  if (Failed(WriteChanged(first_, keepBegin)) || Failed(WriteChanged(keepEnd, End()))) {
    return Result::kFailed;
  }
  Run front;
  Run back;
  if (Failed(Read(first, keepBegin, front)) || Failed(Read(keepEnd, end, back))) {
    for (const Run& read : {front, back}) {
      for (const Held& held : read) store_.Free(held.place);
    }
    return Result::kFailed;
  }
  if (keepBegin < keepEnd) {
    const auto kept = run_.begin() + (keepBegin - first_);
    front.insert(front.end(), kept, kept + (keepEnd - keepBegin));
  }
  Drop(first_, keepBegin);
  Drop(keepEnd, End());
  front.insert(front.end(), back.begin(), back.end());
  run_ = std::move(front);
  first_ = first;
  return Result::kDone;
}

Result MoveBuffer::Read(std::uint32_t begin, std::uint32_t end, Run& run) {
  while (begin < end) {
    const std::uint32_t count = std::min(end - begin, SectorStore::kBlockSectors);
    const SectorStore::Place place = store_.Take(count);
    for (std::uint32_t i = 0; i < count; ++i) run.push_back({place + i, false});
    if (Failed(set_.ReadSectors(transaction_, begin, count, store_.At(place, count)))) return Result::kFailed;
    begin += count;
  }
  return Result::kDone;
}

void MoveBuffer::Drop(std::uint32_t begin, std::uint32_t end) {
  begin = std::max(begin, first_);
  end = std::min(end, End());
  for (; begin < end; ++begin) store_.Free(run_[begin - first_].place);
}

Result MoveBuffer::Flush() {
  return WriteChanged(first_, End());
}

Result MoveBuffer::WriteChanged(std::uint32_t begin, std::uint32_t end) {
  if (writeFailed_) return Result::kFailed;
  begin = std::max(begin, first_);
  end = std::min(end, End());
  while (begin < end) {
    std::uint32_t stop = begin;
    while (stop < end && stop - begin < SectorStore::kBlockSectors && run_[stop - first_].changed) {
      ++stop;
    }
    if (stop == begin) {
      ++begin;
      continue;
    }
    writeFailed_ = Failed(WriteStretch(begin, stop));
    if (writeFailed_) return Result::kFailed;
    begin = stop;
  }
  return Result::kDone;
}

Result MoveBuffer::WriteStretch(std::uint32_t begin, std::uint32_t end) {
  together_.clear();
  for (std::uint32_t lba = begin; lba < end; ++lba) {
    const SectorView sector = At(lba);
    together_.insert(together_.end(), sector.begin(), sector.end());
    run_[lba - first_].changed = false;
  }
  return set_.WriteSectors(transaction_, begin, together_);
}

SectorView MoveBuffer::At(std::uint32_t lba) const {
  return store_.At(run_[lba - first_].place);
}

std::span<std::uint8_t, kSectorSize> MoveBuffer::Edit(std::uint32_t lba) {
  Held& held = run_[lba - first_];
  held.changed = true;
  return store_.At(held.place, 1).first<kSectorSize>();
}

void MoveBuffer::MoveSector(std::uint32_t from, std::uint32_t to) {
  const auto [low, high] = std::minmax(from, to);
  const auto begin = run_.begin() + (low - first_);
  const auto end = run_.begin() + (high - first_) + 1;
  std::rotate(begin, from < to ? begin + 1 : end - 1, end);
  for (auto held = begin; held != end; ++held) held->changed = true;
}

}  // namespace quillomar
