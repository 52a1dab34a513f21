#include "editor/recent_files.h"

#include <algorithm>

#include "base/format.h"
#include "base/paths.h"

namespace quillomar {

std::string RecentFiles::EntryPath(std::size_t entry) const {
  return Format("%s/QuillomarLastFile%d.txt", folder_.c_str(), static_cast<int>(entry));
}

std::string RecentFiles::ScratchPath() const {
  return folder_ + "/QuillomarLastFileTemp.txt";
}

void RecentFiles::Open(std::string folder) {
  folder_ = std::move(folder);
  Rebuild();
}

void RecentFiles::Rebuild() {
  entries_.clear();
  if (folder_.empty()) return;
  for (std::size_t position = 0; position < kMaxRecentFiles; ++position) {
    auto summary = CheckAnalysisCache(files_, EntryPath(position), CacheDates::kRespected);
    if (!summary) continue;
    const std::size_t free = entries_.size();
    if (free != position && Failed(files_.Rename(EntryPath(position), EntryPath(free)))) return;
    entries_.push_back(std::move(*summary));
  }
}

void RecentFiles::MoveToFront(std::size_t entry) {
  // A left-over of a run that was cut short; mostly there is none.
  (void)files_.Remove(ScratchPath());
  // Without its file on the scratch name, the entry would be lost under the one before it.
  if (Failed(files_.Rename(EntryPath(entry), ScratchPath()))) return;
  for (std::size_t j = entry; j > 0; --j) (void)files_.Rename(EntryPath(j - 1), EntryPath(j));
  (void)files_.Rename(ScratchPath(), EntryPath(0));
}

Result RecentFiles::Promote(std::size_t entry) {
  if (entry >= entries_.size()) return Result::kFailed;
  const std::string firstPath = entries_[entry].firstPath;
  if (entry > 0) MoveToFront(entry);
  Rebuild();
  const bool leads = !entries_.empty() && entries_.front().firstPath == firstPath;
  return leads ? Result::kDone : Result::kFailed;
}

void RecentFiles::Save(const AnalysisCache& cache) {
  if (folder_.empty() || cache.paths.empty()) return;
  // Written aside first: half a list of LBAs would pass for a whole one.
  if (Failed(WriteAnalysisCache(files_, ScratchPath(), cache))) {
    (void)files_.Remove(ScratchPath());
    return;
  }
  const std::size_t last = std::min(entries_.size(), kMaxRecentFiles - 1);
  const std::size_t position = PositionOf(cache.paths.front()).value_or(last);
  (void)files_.Rename(ScratchPath(), EntryPath(position));
  Rebuild();
  const auto saved = std::find_if(entries_.begin(), entries_.end(), [&](const CacheSummary& entry) {
    return entry.firstPath == cache.paths.front();
  });
  (void)Promote(static_cast<std::size_t>(saved - entries_.begin()));
}

std::optional<std::size_t> RecentFiles::PositionOf(const std::string& firstPath) const {
  for (std::size_t position = 0; position < kMaxRecentFiles; ++position) {
    const auto summary = CheckAnalysisCache(files_, EntryPath(position), CacheDates::kIgnored);
    if (summary && summary->firstPath == firstPath) return position;
  }
  return std::nullopt;
}

std::optional<std::size_t> RecentFiles::Find(const std::string& firstPath,
                                             std::size_t fileCount) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const CacheSummary& entry) {
    return EqualIgnoringCase(entry.firstPath, firstPath) &&
           static_cast<std::size_t>(entry.fileCount) >= fileCount;
  });
  if (found == entries_.end()) return std::nullopt;
  return static_cast<std::size_t>(found - entries_.begin());
}

std::string RecentFileLabel(const CacheSummary& entry) {
  if (entry.fileCount < 2) return entry.firstPath + " ";
  return Format("%s - %d files", entry.firstPath.c_str(), entry.fileCount);
}

}  // namespace quillomar
