// How long opening VOB files takes with a scan and from the analysis cache, both in this process.
//
//   bench_fast_open FOLDER VOB...    FOLDER keeps the cache
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/platform.h"
#include "cli/cli_front_end.h"
#include "editor/editor.h"

namespace quillomar {
namespace {

constexpr int kRuns = 9;

struct Times {
  double shortest = 0, median = 0, longest = 0;  // ms
};

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

// The first run fills the page cache and does not count.
Times Measure(const std::function<void()>& work) {
  std::vector<double> times;
  for (int run = 0; run <= kRuns; ++run) times.push_back(Milliseconds(work));
  times.erase(times.begin());
  std::sort(times.begin(), times.end());
  return {times.front(), times[kRuns / 2], times.back()};
}

void Print(const char* what, const Times& times) {
  std::printf("| %s | %.1f | %.1f to %.1f |\n", what, times.median, times.shortest, times.longest);
}

int Run(const std::string& folder, const std::vector<std::string>& vobs) {
  const auto files = MakeDiskFileSystem();
  Session session(*files, StateFolder());
  session.dataFolder = folder;
  session.fastOpen = FastOpen::kNever;
  CliFrontEnd frontEnd;
  InlineJobRunner runner;
  Editor editor(session, frontEnd, runner);
  editor.ReadRecentFiles();

  const Times scan = Measure([&] { editor.OpenFiles(vobs, false); });
  const int scanned = editor.Doc().UnitCount();
  const Times fast = Measure([&] { editor.OpenRecent(0); });
  if (!editor.Doc().Files().OpenedFromCache() || editor.Doc().UnitCount() != scanned) {
    std::fprintf(stderr, "the fast open did not find what the scan found\n");
    return 1;
  }
  std::printf("| %d subpictures | median, ms | range, ms |\n|---|---|---|\n", scanned);
  Print("scan", scan);
  Print("fast open", fast);
  std::printf("\nThe fast open is %.1f times faster.\n", scan.median / fast.median);
  return 0;
}

}  // namespace
}  // namespace quillomar

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: bench_fast_open FOLDER VOB...\n");
    return 2;
  }
  return quillomar::Run(argv[1], {argv + 2, argv + argc});
}
