// How long it takes to move subpictures in time: the VOB files are scanned, changed in place and
// synced.
//
//   bench_retime SECONDS COUNT FOLDER VOB...
//
// COUNT: subpictures from the first one on; 0: all. FOLDER: where the journal goes; "-": none.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "base/platform.h"
#include "cli/cli_front_end.h"
#include "editor/editor.h"
#include "support/direct_transaction.h"

namespace quillomar {
namespace {

using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

int Run(double seconds, std::size_t count, const std::string& folder,
        const std::vector<std::string>& vobs) {
  const auto files = MakeDiskFileSystem();
  Session session(*files, folder);
  if (folder == "-") {
    session.transactions = std::make_unique<test::DirectTransactionSource>(*files);
  }
  session.reporter.InstallHooks({[](const std::string&) { return 1; },
                                 [](const std::string&) { return true; },
                                 [](const std::string&) { return true; }});
  session.fastOpen = FastOpen::kNever;
  CliFrontEnd frontEnd;
  InlineJobRunner runner;
  Editor editor(session, frontEnd, runner);

  const auto start = Clock::now();
  editor.OpenFiles(vobs, false);
  const double scan = MillisecondsSince(start);
  UnitList units = editor.Doc().Units();
  if (count != 0 && count < units.size()) units.resize(count);
  std::vector<std::uint32_t> times;
  for (const UnitPointer& unit : units) times.push_back(unit->state.pts);

  const auto begin = Clock::now();
  editor.Retime(units, seconds);
  const double retiming = MillisecondsSince(begin);
  int moved = 0;
  for (std::size_t i = 0; i < units.size(); ++i) moved += units[i]->state.pts != times[i] ? 1 : 0;
  std::printf("| %zu MiB, %d subpictures moved | %.0f | %.0f |\n",
              std::size_t{editor.Doc().Files().TotalSectors()} / 512, moved, scan, retiming);
  return moved == 0 ? 1 : 0;
}

}  // namespace
}  // namespace quillomar

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fprintf(stderr, "usage: bench_retime SECONDS COUNT FOLDER VOB...\n");
    return 2;
  }
  return quillomar::Run(std::atof(argv[1]), std::strtoul(argv[2], nullptr, 10), argv[3],
                        {argv + 4, argv + argc});
}
