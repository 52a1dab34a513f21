#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/file.h"
#include "dvd/sector.h"
#include "dvd/vob_file_set.h"

namespace quillomar {

// Reads the sectors of a laid-out file set through handles of its own, so that the decoding thread
// shares none with the rest of the program. Belongs to one thread at a time.
class DiscReader {
 public:
  DiscReader() = default;
  // Files that do not open, or are gone from the set, have no sectors.
  DiscReader(FileSystem& files, const VobFileSet& set);

  // Reads up to as many sectors as fit into `out` from an LBA in set on, within one file. Returns
  // how many arrived.
  std::uint32_t Read(std::uint32_t lba, std::span<std::uint8_t> out);
  [[nodiscard]] std::uint32_t TotalSectors() const { return total_; }

 private:
  struct Piece {
    std::unique_ptr<File> file;
    std::uint32_t startLba = 0;
    std::uint32_t length = 0;
  };
  std::vector<Piece> pieces_;
  std::uint32_t total_ = 0;
};

// Walks over neighbouring sectors, reading ahead in blocks.
class SectorCursor {
 public:
  SectorCursor(DiscReader& reader, std::uint32_t lba) : reader_(reader), lba_(lba) {}
  // The next sector; null where none can be read. Valid until the next call.
  const std::uint8_t* Next();
  // LBA in set of the sector that Next gives next.
  [[nodiscard]] std::uint32_t Lba() const { return lba_; }

 private:
  static constexpr std::uint32_t kBlockSectors = 32;

  DiscReader& reader_;
  std::uint32_t lba_;
  std::vector<std::uint8_t> block_ = std::vector<std::uint8_t>(kBlockSectors * kSectorSize);
  std::uint32_t index_ = 0;
  std::uint32_t count_ = 0;
};

}  // namespace quillomar
