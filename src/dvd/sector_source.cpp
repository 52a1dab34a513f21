#include "dvd/sector_source.h"

#include <algorithm>

namespace quillomar {
namespace {

constexpr std::uint32_t kBlockSectors = 128;  // 256 KiB, which stay in the cache of one core

std::uint32_t LongestOf(std::span<const VobFile> files) {
  std::uint32_t longest = 0;
  for (const VobFile& vob : files) longest = std::max(longest, vob.length);
  return longest;
}

}  // namespace

std::uint32_t ReadWholeSectors(const VobFile& vob, std::uint32_t lbaInFile,
                               std::span<std::uint8_t> out) {
  if (!vob.file) return 0;
  const std::uint64_t offset = std::uint64_t{lbaInFile} * kSectorSize;
  if (const auto read = vob.file->ReadAt(offset, out)) {
    return static_cast<std::uint32_t>(*read / kSectorSize);
  }
  // One sector that cannot be read must not cost those before it.
  std::size_t done = 0;
  while (done + kSectorSize <= out.size() &&
         vob.file->ReadAt(offset + done, out.subspan(done, kSectorSize)) == kSectorSize) {
    done += kSectorSize;
  }
  return static_cast<std::uint32_t>(done / kSectorSize);
}

SequentialSource::SequentialSource(std::span<const VobFile> files)
    : files_(files), buffer_(std::min(kBlockSectors, LongestOf(files)) * kSectorSize) {}

std::optional<SectorRun> SequentialSource::NextRun() {
  for (; fileIndex_ < files_.size(); ++fileIndex_, lbaInFile_ = 0) {
    const VobFile& vob = files_[fileIndex_];
    if (lbaInFile_ >= vob.length) continue;
    const std::uint32_t asked = std::min(kBlockSectors, vob.length - lbaInFile_);
    const auto target = std::span(buffer_).first(asked * kSectorSize);
    const std::uint32_t count = ReadWholeSectors(vob, lbaInFile_, target);
    if (count == 0) continue;
    const SectorRun run{static_cast<int>(fileIndex_), vob.startLba + lbaInFile_, lbaInFile_, count,
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
    if (ReadWholeSectors(vob, place->lba, buffer_) == 0) continue;
    return SectorRun{place->fileIndex, lba, place->lba, 1, buffer_};
  }
  return std::nullopt;
}

std::optional<std::size_t> ListedSource::Remaining() const {
  return lbas_.size() - next_ + 1;
}

}  // namespace quillomar
