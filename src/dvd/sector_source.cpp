#include "dvd/sector_source.h"

#include <algorithm>

namespace quillomar {
namespace {

constexpr std::uint32_t kBlockSectors = 512;  // 1 MiB

// How many whole sectors of a file could be read.
std::uint32_t ReadWhole(const VobFile& vob, std::uint32_t lbaInFile, std::span<std::uint8_t> out) {
  if (!vob.file) return 0;
  const auto read = vob.file->ReadAt(std::uint64_t{lbaInFile} * kSectorSize, out);
  return static_cast<std::uint32_t>(read.value_or(0) / kSectorSize);
}

std::uint32_t LongestOf(std::span<const VobFile> files) {
  std::uint32_t longest = 0;
  for (const VobFile& vob : files) longest = std::max(longest, vob.length);
  return longest;
}

}  // namespace

SequentialSource::SequentialSource(std::span<const VobFile> files)
    : files_(files), buffer_(std::min(kBlockSectors, LongestOf(files)) * kSectorSize) {}

std::optional<SectorRun> SequentialSource::NextRun() {
  for (; fileIndex_ < files_.size(); ++fileIndex_, lbaInFile_ = 0) {
    const VobFile& vob = files_[fileIndex_];
    if (lbaInFile_ >= vob.length) continue;
    const std::uint32_t asked = std::min(kBlockSectors, vob.length - lbaInFile_);
    const auto target = std::span(buffer_).first(asked * kSectorSize);
    const std::uint32_t count = ReadWhole(vob, lbaInFile_, target);
    if (count == 0) continue;
    const SectorRun run{static_cast<int>(fileIndex_), vob.startLba + lbaInFile_, lbaInFile_,
                        target.first(count * kSectorSize)};
    // A short read is the end of this file, even if more has been written to it since.
    lbaInFile_ = count == asked ? lbaInFile_ + count : vob.length;
    return run;
  }
  return std::nullopt;
}

ListedSource::ListedSource(const VobFileSet& set, std::vector<std::uint32_t> lbas)
    : set_(set), lbas_(std::move(lbas)) {
  std::sort(lbas_.begin(), lbas_.end());
  lbas_.erase(std::unique(lbas_.begin(), lbas_.end()), lbas_.end());
}

std::optional<SectorRun> ListedSource::NextRun() {
  while (next_ < lbas_.size()) {
    const std::uint32_t lba = lbas_[next_++];
    const auto place = set_.Locate(lba);
    if (!place) continue;
    const VobFile& vob = set_.Files()[static_cast<std::size_t>(place->fileIndex)];
    if (ReadWhole(vob, place->lba, buffer_) == 0) continue;
    return SectorRun{place->fileIndex, lba, place->lba, buffer_};
  }
  return std::nullopt;
}

std::optional<std::size_t> ListedSource::Remaining() const {
  return lbas_.size() - next_ + 1;
}

}  // namespace quillomar
