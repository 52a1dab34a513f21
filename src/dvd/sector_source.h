#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "dvd/sector.h"
#include "dvd/vob_file_set.h"

namespace quillomar {

// Neighbouring sectors of one file, in memory until the next run is asked for.
struct SectorRun {
  int fileIndex = 0;
  std::uint32_t lba = 0;                // LBA in set of the first
  std::uint32_t lbaInFile = 0;          // LBA in file of the first
  std::uint32_t count = 0;              // sectors, at least one
  std::span<const std::uint8_t> bytes;  // of all of them, or empty: none matters to the scan

  [[nodiscard]] SectorView At(std::uint32_t index) const {
    return bytes.subspan(index * kSectorSize).first<kSectorSize>();
  }
};

// Reads whole sectors from an LBA in file on, as many as fit into `out`; returns how many there are
// up to the end of the file or to the first that cannot be read.
std::uint32_t ReadWholeSectors(const VobFile& vob, std::uint32_t lbaInFile,
                               std::span<std::uint8_t> out);

// Delivers the sectors that a scan visits, in ascending LBA order.
class SectorSource {
 public:
  virtual ~SectorSource() = default;
  // Nothing when there are no more.
  virtual std::optional<SectorRun> NextRun() = 0;
  // Sectors of the last run and of those to come, where the source counts them.
  [[nodiscard]] virtual std::optional<std::size_t> Remaining() const = 0;
};

// Every sector of some files that have been laid out, read in large blocks. A file ends where it
// can no longer be read.
class SequentialSource final : public SectorSource {
 public:
  explicit SequentialSource(std::span<const VobFile> files);
  std::optional<SectorRun> NextRun() override;
  [[nodiscard]] std::optional<std::size_t> Remaining() const override { return std::nullopt; }
  // Where the next run begins, if anything is left there.
  [[nodiscard]] SectorPlace Next() const { return {static_cast<int>(fileIndex_), lbaInFile_}; }

 private:
  std::span<const VobFile> files_;
  std::size_t fileIndex_ = 0;
  std::uint32_t lbaInFile_ = 0;
  std::vector<std::uint8_t> buffer_;
};

// Single sectors by a list of LBAs in set, which need not be in order; those outside the set or
// unreadable are left out.
class ListedSource final : public SectorSource {
 public:
  ListedSource(const VobFileSet& set, std::vector<std::uint32_t> lbas);
  std::optional<SectorRun> NextRun() override;
  [[nodiscard]] std::optional<std::size_t> Remaining() const override;

 private:
  const VobFileSet& set_;
  std::vector<std::uint32_t> lbas_;
  std::size_t next_ = 0;
  Sector buffer_{};
};

}  // namespace quillomar
