#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file.h"

// Analysis cache: a text file with everything that a fast open of a file set needs, one item a
// line.
//
//   Quillomar -- Version 1.501 ...   banner
//   2                                number of VOB files
//   "/disc/VTS_01_1.VOB" 0           each file's path, and a zero
//   "/disc/VTS_01_2.VOB" 0
//   17                               LBAs in set worth reading, ascending
//   ...
namespace quillomar {

inline constexpr const char* kCacheBanner =
    "Quillomar -- Version 1.501, by the Quillomar developers";
// The part of the banner before its version number.
inline constexpr std::string_view kCacheBannerStart = "Quillomar -- Version ";
inline constexpr float kOldestCacheVersion = 1.4104F;

struct AnalysisCache {
  std::vector<std::string> paths;   // of the VOB files, in the order of the set
  std::vector<std::uint32_t> lbas;  // LBAs in set
};

// Writes a cache file, its LBAs sorted and each once; returns once it has reached the device.
// Fails, writing nothing, when there are no files or no LBAs, and when a path cannot stand in the
// file.
Result WriteAnalysisCache(FileSystem& files, const std::string& path, AnalysisCache cache);

// What the menu of recent files shows of a cache file.
struct CacheSummary {
  std::string firstPath;
  int fileCount = 0;
};

enum class CacheDates {
  kRespected,  // a VOB that is newer than the cache file makes it invalid
  kIgnored,
};

// Nothing for a file that is no cache, is of a version too old, or names a VOB that does not exist.
[[nodiscard]] std::optional<CacheSummary> CheckAnalysisCache(FileSystem& files,
                                                             const std::string& path,
                                                             CacheDates dates);

// The content of a cache file; one without a banner is taken too. Nothing when the files it lists
// cannot be made out; a list without files is empty.
[[nodiscard]] std::optional<AnalysisCache> ParseAnalysisCache(std::string_view text);
// The same from a file, which may have up to 16 MiB.
[[nodiscard]] std::optional<AnalysisCache> ReadAnalysisCache(FileSystem& files,
                                                             const std::string& path);

}  // namespace quillomar
