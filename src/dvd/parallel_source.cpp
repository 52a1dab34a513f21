#include "dvd/parallel_source.h"

#include <algorithm>

#include "dvd/pack.h"

namespace quillomar {

ParallelSource::ParallelSource(std::span<const VobFile> files, SectorPlace from,
                               const ReadAhead& ahead)
    : files_(files),
      blockSectors_(ahead.blockSectors),
      buffer_(blockSectors_ * kSectorSize),
      ring_(ahead.blocks),
      next_(from) {
  // With one core the second reader would only add its switches.
  if (SkipEndedFiles() && std::thread::hardware_concurrency() > 1) {
    reader_ = std::thread([this] { ReadAlong(); });
  }
}

ParallelSource::~ParallelSource() {
  if (!reader_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  changed_.notify_all();
  reader_.join();
}

std::optional<SectorRun> ParallelSource::NextRun() {
  while (true) {
    if (!current_) current_ = ReadOldest();
    if (!current_) return std::nullopt;
    if (const auto run = NextRunOf(*current_)) return run;
    Release();
  }
}

void ParallelSource::ReadAlong() {
  std::vector<std::uint8_t> buffer(blockSectors_ * kSectorSize);
  std::unique_lock lock(mutex_);
  while (!stopped_) {
    Block* block = Claim();
    if (!block) {
      changed_.wait(lock);
      continue;
    }
    lock.unlock();
    Read(*block, buffer);
    lock.lock();
    block->done = true;
    changed_.notify_all();
  }
}

// Returns false at the end of the last file.
bool ParallelSource::SkipEndedFiles() {
  const auto atEnd = [this](std::size_t index) { return next_.lba >= files_[index].length; };
  for (auto i = static_cast<std::size_t>(next_.fileIndex); i < files_.size(); ++i) {
    if (!atEnd(i)) return true;
    next_ = {static_cast<int>(i + 1), 0};
  }
  return false;
}

// The next block to be read by whoever calls, with mutex_ locked; null when none may be read now.
ParallelSource::Block* ParallelSource::Claim() {
  if (claimed_ - released_ == ring_.size() || !SkipEndedFiles()) return nullptr;
  Block& block = ring_[claimed_ % ring_.size()];
  ++claimed_;
  const std::uint32_t length = files_[static_cast<std::size_t>(next_.fileIndex)].length;
  block.place = next_;
  block.asked = std::min(blockSectors_, length - next_.lba);
  block.kept.clear();
  block.done = false;
  next_.lba += block.asked;
  return &block;
}

void ParallelSource::Read(Block& block, std::span<std::uint8_t> buffer) const {
  const VobFile& vob = files_[static_cast<std::size_t>(block.place.fileIndex)];
  block.count = ReadWholeSectors(vob, block.place.lba, buffer.first(block.asked * kSectorSize));
  for (std::uint32_t i = 0; i < block.count; ++i) {
    const SectorView sector = buffer.subspan(i * kSectorSize).first<kSectorSize>();
    const PackKind kind = ClassifyPack(sector).kind;
    if (kind != PackKind::kNav && kind != PackKind::kSubpicture) continue;
    block.kept.push_back({i, {}});
    std::copy(sector.begin(), sector.end(), block.kept.back().bytes.begin());
  }
}

// The oldest block not yet released, once it has been read; null at the end. Rather than wait for
// the other reader this one reads what follows.
ParallelSource::Block* ParallelSource::ReadOldest() {
  std::unique_lock lock(mutex_);
  while (true) {
    Block& oldest = ring_[released_ % ring_.size()];
    if (released_ < claimed_ && oldest.done) return &oldest;
    if (Block* block = Claim()) {
      lock.unlock();
      Read(*block, buffer_);
      lock.lock();
      block->done = true;
    } else if (released_ == claimed_) {
      return nullptr;
    } else {
      changed_.wait(lock);
    }
  }
}

void ParallelSource::Release() {
  const int file = current_->place.fileIndex;
  const bool ended = current_->count < current_->asked;
  // Blocks of the file that ended may have been read already; NextRunOf drops them.
  if (ended) endedFile_ = file;
  {
    const std::lock_guard lock(mutex_);
    if (ended && next_.fileIndex == file) next_ = {file + 1, 0};
    ++released_;
  }
  changed_.notify_all();
  current_ = nullptr;
  offset_ = 0;
  nextKept_ = 0;
}

// Nothing once the block is used up.
std::optional<SectorRun> ParallelSource::NextRunOf(const Block& block) {
  if (offset_ == block.count || block.place.fileIndex == endedFile_) return std::nullopt;
  const VobFile& vob = files_[static_cast<std::size_t>(block.place.fileIndex)];
  const std::uint32_t lbaInFile = block.place.lba + offset_;
  SectorRun run{block.place.fileIndex, vob.startLba + lbaInFile, lbaInFile, 1, {}};
  const bool keeps = nextKept_ < block.kept.size();
  if (keeps && block.kept[nextKept_].index == offset_) {
    run.bytes = block.kept[nextKept_++].bytes;
  } else {
    run.count = (keeps ? block.kept[nextKept_].index : block.count) - offset_;
  }
  offset_ += run.count;
  return run;
}

}  // namespace quillomar
