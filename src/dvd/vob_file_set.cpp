#include "dvd/vob_file_set.h"

#include <algorithm>
#include <limits>

#include "base/paths.h"
#include "dvd/vob_name.h"

namespace quillomar {
namespace {

constexpr int kProbedPieces = 10;

// Whole sectors of whole KiB.
std::uint64_t SectorsOf(std::uint64_t bytes) {
  return bytes >> 10 >> 1;
}

int TitleSetOf(const VobFile& file) {
  return ParseVobTitle(SplitPath(file.path).title).titleSet.value_or(0);
}

std::uint64_t ProbeTitleSet(FileSystem& files, const std::string& folder, int titleSet) {
  std::uint64_t total = 0;
  for (int piece = 1; piece <= kProbedPieces; ++piece) {
    const std::string path = FindIgnoringCase(files, JoinPath(folder, VobName(titleSet, piece)));
    const auto file = files.Open(path, OpenMode::kReadOnly);
    if (!file) break;
    total += SectorsOf(file->Size());
  }
  return total;
}

}  // namespace

void VobFileSet::Reset() {
  entries_.clear();
  canSave_ = true;
  fullTitleDomain_ = false;
  openedFromCache_ = false;
}

std::shared_ptr<File> VobFileSet::OpenFile(const std::string& path) {
  if (auto file = files_.Open(path, OpenMode::kExclusiveWrite)) return file;
  auto file = files_.Open(path, OpenMode::kReadOnly);
  if (!file) return nullptr;
  if (canSave_) reporter_.ReportReadOnly(path);
  canSave_ = false;
  fullTitleDomain_ = false;
  return file;
}

Result VobFileSet::AddFile(const std::string& path) {
  if (entries_.size() >= kMaxVobFiles) return Result::kFailed;
  auto file = OpenFile(path);
  if (!file) return Result::kFailed;
  entries_.push_back({path, std::move(file), 0, 0});
  return Result::kDone;
}

Result VobFileSet::OpenFullDomain(const std::string& path) {
  if (ParseVobTitle(SplitPath(path).title).piece.value_or(0) <= 0) return AddFile(path);
  Result result = Result::kFailed;
  for (int piece = 1; piece <= kMaxPieces; ++piece) {
    const std::string found = FindIgnoringCase(files_, PiecePath(path, piece));
    if (files_.Exists(found) && !Failed(AddFile(found))) result = Result::kDone;
  }
  return result;
}

void VobFileSet::Validate() {
  std::sort(entries_.begin(), entries_.end(),
            [](const VobFile& a, const VobFile& b) { return a.path < b.path; });
  if (entries_.size() < 2) return;
  if (IsMenuFile(entries_.front().path)) {
    reporter_.ReportError("All files must belong to the same domain!\nOpening the menu");
    entries_.resize(1);
    return;
  }
  const int titleSet = TitleSetOf(entries_.front());
  const auto other = std::find_if(entries_.begin(), entries_.end(), [=](const VobFile& file) {
    return TitleSetOf(file) != titleSet;
  });
  if (other == entries_.end()) return;
  reporter_.ReportError("All files must belong to the same VTS! Keeping first one(s)\n");
  entries_.erase(other, entries_.end());
}

void VobFileSet::LayOut() {
  std::uint32_t next = 0;
  for (VobFile& entry : entries_) {
    const std::uint64_t sectors = entry.file ? SectorsOf(entry.file->Size()) : 0;
    const std::uint64_t room = std::numeric_limits<std::uint32_t>::max() - next;
    entry.startLba = next;
    entry.length = static_cast<std::uint32_t>(std::min(sectors, room));
    next += entry.length;
  }
  fullTitleDomain_ = IsWholeTitleDomain();
}

bool VobFileSet::IsWholeTitleDomain() const {
  if (!canSave_ || entries_.empty()) return false;
  if (ParseVobTitle(SplitPath(entries_.front().path).title).piece != 1) return false;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    // A gap would shift every later sector against the addresses in the IFO and the nav packs.
    if (PieceDigit(entries_[i].path) != static_cast<int>(i) + 1) return false;
  }
  const int next = static_cast<int>(entries_.size()) + 1;
  return next > kMaxPieces ||
         !files_.Exists(FindIgnoringCase(files_, PiecePath(entries_.back().path, next)));
}

std::optional<SectorPlace> VobFileSet::Locate(std::uint32_t lba) const {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const VobFile& entry = entries_[i];
    if (lba >= entry.startLba && lba - entry.startLba < entry.length) {
      return SectorPlace{static_cast<int>(i), lba - entry.startLba};
    }
  }
  return std::nullopt;
}

std::vector<VobFileSet::Stretch> VobFileSet::Cut(std::uint32_t lba, std::uint32_t count) const {
  std::vector<Stretch> stretches;
  std::size_t begin = 0;
  while (count > 0) {
    const auto place = Locate(lba);
    if (!place) return {};
    const VobFile& vob = entries_[static_cast<std::size_t>(place->fileIndex)];
    if (!vob.file) return {};
    const std::uint32_t part = std::min(count, vob.length - place->lba);
    stretches.push_back({&vob, std::uint64_t{place->lba} * kSectorSize, begin, part * kSectorSize});
    begin += part * kSectorSize;
    lba += part;
    count -= part;
  }
  return stretches;
}

Result VobFileSet::ReadSectors(std::uint32_t lba, std::uint32_t count,
                               std::span<std::uint8_t> out) {
  const auto fromFile = [](File& file, std::uint64_t offset, std::span<std::uint8_t> part) {
    return file.ReadAt(offset, part);
  };
  return ReadWith(fromFile, lba, count, out);
}

Result VobFileSet::ReadSectors(WriteTransaction& transaction, std::uint32_t lba,
                               std::uint32_t count, std::span<std::uint8_t> out) {
  const auto changed = [&](File& file, std::uint64_t offset, std::span<std::uint8_t> part) {
    return transaction.Read(file, offset, part);
  };
  return ReadWith(changed, lba, count, out);
}

Result VobFileSet::ReadWith(const Reader& reader, std::uint32_t lba, std::uint32_t count,
                            std::span<std::uint8_t> out) const {
  if (out.size() / kSectorSize < count) return Result::kFailed;
  const auto stretches = Cut(lba, count);
  if (stretches.empty()) return Result::kFailed;
  for (const Stretch& part : stretches) {
    const auto read = reader(*part.vob->file, part.offset, out.subspan(part.begin, part.size));
    if (read != part.size) return Result::kFailed;
  }
  return Result::kDone;
}

Result VobFileSet::WriteSectors(WriteTransaction& transaction, std::uint32_t lba,
                                ByteSpan sectors) {
  const std::size_t count = sectors.size() / kSectorSize;
  if (sectors.size() % kSectorSize != 0 || count > TotalSectors()) return Result::kFailed;
  const auto stretches = Cut(lba, static_cast<std::uint32_t>(count));
  if (stretches.empty()) return Result::kFailed;
  for (const Stretch& part : stretches) {
    const ByteSpan bytes = sectors.subspan(part.begin, part.size);
    if (Failed(transaction.Write(part.vob->file, part.offset, bytes))) return Result::kFailed;
  }
  return Result::kDone;
}

Result VobFileSet::ReopenAll() {
  // All are closed first: a file's own lock must not turn it read-only.
  for (VobFile& entry : entries_) entry.file.reset();
  Result result = Result::kDone;
  for (VobFile& entry : entries_) {
    entry.file = OpenFile(entry.path);
    if (!entry.file) result = Result::kFailed;
  }
  return result;
}

std::uint32_t VobFileSet::TotalSectors() const {
  return entries_.empty() ? 0 : entries_.back().startLba + entries_.back().length;
}

int LargestTitleSet(FileSystem& files, const std::string& folder) {
  int largest = 1;
  std::uint64_t most = 0;
  for (int titleSet = 1; titleSet <= kMaxTitleSets; ++titleSet) {
    const std::uint64_t total = ProbeTitleSet(files, folder, titleSet);
    if (total > most) {
      most = total;
      largest = titleSet;
    }
  }
  return largest;
}

}  // namespace quillomar
