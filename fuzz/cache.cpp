// Analysis caches: whatever stands in one, checking and reading it is safe and keeps to its size,
// and what was read is written and read again unchanged.
#include <algorithm>

#include "dvd/analysis_cache.h"
#include "dvd/vob_file_set.h"
#include "fuzz_target.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr const char* kPath = "/data/c.txt";

void CheckRoundTrip(FileSystem& files, AnalysisCache cache) {
  if (Failed(WriteAnalysisCache(files, kPath, cache))) {
    Require(cache.paths.empty() || cache.lbas.empty() ||
            std::any_of(cache.paths.begin(), cache.paths.end(), [](const std::string& path) {
              return path.find('\n') != std::string::npos;
            }));
    return;
  }
  const auto again = ReadAnalysisCache(files, kPath);
  std::sort(cache.lbas.begin(), cache.lbas.end());
  cache.lbas.erase(std::unique(cache.lbas.begin(), cache.lbas.end()), cache.lbas.end());
  Require(again && again->paths == cache.paths && again->lbas == cache.lbas);
}

void CheckCache(ByteSpan input) {
  test::MemoryFileSystem files;
  files.Put("/v/VTS_01_1.VOB", Bytes(kSectorSize));
  files.Put(kPath, Bytes(input.begin(), input.end()));
  const auto summary = CheckAnalysisCache(files, kPath, CacheDates::kIgnored);
  const auto cache = ReadAnalysisCache(files, kPath);
  // What the menu shows can be opened.
  if (summary) Require(cache && cache->paths.front() == summary->firstPath);
  if (!cache) return;
  Require(cache->paths.size() <= static_cast<std::size_t>(kMaxVobFiles));
  Require(cache->lbas.size() <= input.size());
  CheckRoundTrip(files, *cache);
}

Bytes Seed(std::string_view text) {
  return {text.begin(), text.end()};
}

}  // namespace

std::vector<Bytes> Seeds() {
  return {Seed("Quillomar -- Version 1.501, x\n1\n\"/v/VTS_01_1.VOB\" 0\n3\n17\n4294967295\n"),
          Seed("Quillomar -- Version 1.41\n2\n\"a\" 0\n\"/v/VTS_01_1.VOB\" 0\n9\n8\n"),
          Seed("2147483647\n\"a\nb\" -1\n"), Seed("1\n\"/v/VTS_01_1.VOB\" 0\n5\n-5\n6")};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillomar::fuzz::CheckCache({data, size});
  return 0;
}
