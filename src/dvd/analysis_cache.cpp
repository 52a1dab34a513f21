#include "dvd/analysis_cache.h"

#include <algorithm>
#include <charconv>

#include "base/format.h"
#include "dvd/vob_file_set.h"

namespace quillomar {
namespace {

constexpr std::uint64_t kMaxCacheSize = std::uint64_t{16} << 20;
// Holds the banner and the paths of a full set with room to spare.
constexpr std::size_t kMaxHeaderSize = std::size_t{128} << 10;
constexpr std::string_view kBlanks = " \t\r\n\v\f";

// Walks through the items of a cache's text.
class CacheReader {
 public:
  explicit CacheReader(std::string_view text) : rest_(text) {}

  // The version in the banner, whose line is taken with it; without one nothing is taken.
  std::optional<float> Banner() {
    if (!rest_.starts_with(kCacheBannerStart)) return std::nullopt;
    const std::string_view number = rest_.substr(kCacheBannerStart.size());
    float version = 0;
    const auto [stop, error] =
        std::from_chars(number.data(), number.data() + number.size(), version);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size()));
    return version;
  }

  template <typename T>
  std::optional<T> Number() {
    SkipBlanks();
    T value = 0;
    const auto [stop, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
    return value;
  }

  // A path in quotes and the number behind it.
  std::optional<std::string> Path() {
    SkipBlanks();
    if (!rest_.starts_with('"')) return std::nullopt;
    const auto end = rest_.find('"', 1);
    if (end == std::string_view::npos || end == 1) return std::nullopt;
    std::string path(rest_.substr(1, end - 1));
    // To the system the path would end there.
    if (path.find('\0') != std::string::npos) return std::nullopt;
    rest_.remove_prefix(end + 1);
    if (!Number<int>()) return std::nullopt;
    return path;
  }

  // The number of files and their paths; nothing when one of these is missing.
  std::optional<std::vector<std::string>> Paths() {
    const auto count = Number<int>();
    if (!count || *count < 0 || *count > kMaxVobFiles) return std::nullopt;
    std::vector<std::string> paths;
    for (int i = 0; i < *count; ++i) {
      auto path = Path();
      if (!path) return std::nullopt;
      paths.push_back(std::move(*path));
    }
    return paths;
  }

 private:
  void SkipBlanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
  }

  std::string_view rest_;
};

std::string_view AsText(ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool CanStandInCache(const std::string& path) {
  return !path.empty() && path.find_first_of("\"\n") == std::string::npos;
}

std::string CacheText(const AnalysisCache& cache) {
  std::string text = Format("%s\n%d\n", kCacheBanner, static_cast<int>(cache.paths.size()));
  for (const std::string& path : cache.paths) text += Format("\"%s\" %d\n", path.c_str(), 0);
  for (const std::uint32_t lba : cache.lbas) text += Format("%u\n", lba);
  return text;
}

// The front of a file, as far as the paths can reach; empty when it cannot be read.
Bytes ReadHeader(FileSystem& files, const std::string& path) {
  const auto file = files.Open(path, OpenMode::kReadOnly);
  if (!file) return {};
  Bytes header(static_cast<std::size_t>(std::min<std::uint64_t>(file->Size(), kMaxHeaderSize)));
  header.resize(file->ReadAt(0, header).value_or(0));
  return header;
}

// Whether a listed VOB exists and, with `newest`, was not changed after that time.
bool IsUsable(FileSystem& files, const std::string& path, std::optional<std::int64_t> newest) {
  const auto changed = files.ModificationTime(path);
  return changed && (!newest || *changed <= *newest);
}

}  // namespace

Result WriteAnalysisCache(FileSystem& files, const std::string& path, AnalysisCache cache) {
  if (cache.paths.empty() || cache.lbas.empty()) return Result::kFailed;
  if (!std::all_of(cache.paths.begin(), cache.paths.end(), CanStandInCache)) return Result::kFailed;
  std::sort(cache.lbas.begin(), cache.lbas.end());
  cache.lbas.erase(std::unique(cache.lbas.begin(), cache.lbas.end()), cache.lbas.end());
  const std::string text = CacheText(cache);
  const auto file = files.Open(path, OpenMode::kCreate);
  if (!file) return Result::kFailed;
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  if (Failed(file->WriteAt(0, {bytes, text.size()}))) return Result::kFailed;
  return file->Sync();
}

std::optional<CacheSummary> CheckAnalysisCache(FileSystem& files, const std::string& path,
                                               CacheDates dates) {
  const Bytes header = ReadHeader(files, path);
  CacheReader reader(AsText(header));
  const auto version = reader.Banner();
  // Written so that a version that is no number fails too.
  if (!version || !(*version >= kOldestCacheVersion)) return std::nullopt;
  const auto paths = reader.Paths();
  if (!paths || paths->empty()) return std::nullopt;
  std::optional<std::int64_t> newest;
  if (dates == CacheDates::kRespected) newest = files.ModificationTime(path).value_or(0);
  const bool usable = std::all_of(paths->begin(), paths->end(), [&](const std::string& vob) {
    return IsUsable(files, vob, newest);
  });
  if (!usable) return std::nullopt;
  return CacheSummary{paths->front(), static_cast<int>(paths->size())};
}

std::optional<AnalysisCache> ParseAnalysisCache(std::string_view text) {
  CacheReader reader(text);
  (void)reader.Banner();
  auto paths = reader.Paths();
  if (!paths) return std::nullopt;
  AnalysisCache cache{std::move(*paths), {}};
  while (const auto lba = reader.Number<std::uint32_t>()) cache.lbas.push_back(*lba);
  return cache;
}

std::optional<AnalysisCache> ReadAnalysisCache(FileSystem& files, const std::string& path) {
  const auto bytes = ReadWholeFile(files, path, kMaxCacheSize);
  return bytes ? ParseAnalysisCache(AsText(*bytes)) : std::nullopt;
}

}  // namespace quillomar
