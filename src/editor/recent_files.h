#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "dvd/analysis_cache.h"

namespace quillomar {

inline constexpr std::size_t kMaxRecentFiles = 8;

// The file sets opened last, the newest first. Each is an analysis cache,
// "QuillomarLastFile<n>.txt" in one folder; what cannot be read or written there is passed over.
class RecentFiles {
 public:
  // Nothing is known or remembered until Open.
  explicit RecentFiles(FileSystem& files) : files_(files) {}
  // Reads the entries of a folder; with an empty one nothing is remembered.
  void Open(std::string folder);

  // Takes up the entries that are valid still and moves their files together.
  void Rebuild();
  // Makes an entry the newest. Fails when it is none or no longer valid.
  Result Promote(std::size_t entry);
  // Writes the analysis of a set as the newest entry: in place of what was known of a set with the
  // same first file, else in place of the oldest. A cache that cannot be written changes nothing.
  void Save(const AnalysisCache& cache);

  // The newest valid entry whose first file is that one (letter case does not matter) and that has
  // at least as many files.
  [[nodiscard]] std::optional<std::size_t> Find(const std::string& firstPath,
                                                std::size_t fileCount) const;
  [[nodiscard]] const std::vector<CacheSummary>& Entries() const { return entries_; }
  [[nodiscard]] std::string EntryPath(std::size_t entry) const;

 private:
  [[nodiscard]] std::string ScratchPath() const;
  void MoveToFront(std::size_t entry);
  // Position of the file that tells of a set with this first file, valid by date or not.
  [[nodiscard]] std::optional<std::size_t> PositionOf(const std::string& firstPath) const;

  FileSystem& files_;
  std::string folder_;
  std::vector<CacheSummary> entries_;  // position n is the file with number n
};

// An entry as the menu shows it.
[[nodiscard]] std::string RecentFileLabel(const CacheSummary& entry);

}  // namespace quillomar
