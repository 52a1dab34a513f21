#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <vector>

#include "dvd/sector_source.h"

namespace quillomar {

// How the two readers of a ParallelSource share their work.
struct ReadAhead {
  std::uint32_t blockSectors = 128;  // read at once; 256 KiB stay in the cache of one core
  std::uint32_t blocks = 64;         // read, or being read, and not yet delivered; at least 1
};

// The sectors of some files that have been laid out, from one place on, where only nav packs and
// subpicture packs still matter: all others come as runs without bytes. A thread of its own reads
// along with the thread that asks, because copying out of the page cache keeps one core busy. The
// two take blocks by turns in ascending order; runs come in that order whoever read them. A file
// ends where it can no longer be read, as in SequentialSource.
class ParallelSource final : public SectorSource {
 public:
  ParallelSource(std::span<const VobFile> files, SectorPlace from, const ReadAhead& ahead);
  ~ParallelSource() override;
  ParallelSource(const ParallelSource&) = delete;
  ParallelSource& operator=(const ParallelSource&) = delete;

  std::optional<SectorRun> NextRun() override;
  [[nodiscard]] std::optional<std::size_t> Remaining() const override { return std::nullopt; }

 private:
  struct KeptSector {
    std::uint32_t index;  // in the block
    Sector bytes;
  };
  struct Block {
    SectorPlace place;        // of its first sector
    std::uint32_t asked = 0;  // sectors
    std::uint32_t count = 0;  // sectors that could be read
    std::vector<KeptSector> kept;
    bool done = false;  // guarded by mutex_; the rest belongs to one thread at a time
  };

  void ReadAlong();
  [[nodiscard]] bool SkipEndedFiles();
  [[nodiscard]] Block* Claim();
  void Read(Block& block, std::span<std::uint8_t> buffer) const;
  [[nodiscard]] Block* ReadOldest();
  void Release();
  [[nodiscard]] std::optional<SectorRun> NextRunOf(const Block& block);

  const std::span<const VobFile> files_;
  const std::uint32_t blockSectors_;
  std::vector<std::uint8_t> buffer_;  // of the thread that asks

  // Of the block being delivered; for the thread that asks alone.
  Block* current_ = nullptr;
  std::uint32_t offset_ = 0;  // sectors delivered
  std::size_t nextKept_ = 0;
  int endedFile_ = -1;  // the last file that came up short

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Block> ring_;
  SectorPlace next_;            // what is read next
  std::uint64_t claimed_ = 0;   // blocks
  std::uint64_t released_ = 0;  // blocks; the oldest not released lies at this position of the ring
  bool stopped_ = false;
  std::thread reader_;
};

}  // namespace quillomar
