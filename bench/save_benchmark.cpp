// What the journal costs: every subpicture of a set is changed and saved, by turns with the journal
// and without one, each time with the syncs that it needs.
//
//   bench_save STATE_FOLDER RUNS VOB...
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "base/platform.h"
#include "cli/cli_front_end.h"
#include "editor/editor.h"
#include "spu/colour_edit.h"
#include "support/direct_transaction.h"

namespace quillomar {
namespace {

using Clock = std::chrono::steady_clock;

class SaveBenchmark {
 public:
  SaveBenchmark(const std::string& state, const std::vector<std::string>& vobs)
      : session_(*files_, state), editor_(session_, frontEnd_, runner_) {
    session_.reporter.InstallHooks({[](const std::string& text) {
                                      std::fprintf(stderr, "%s\n", text.c_str());
                                      return 1;
                                    },
                                    [](const std::string&) { return true; },
                                    [](const std::string&) { return true; }});
    session_.fastOpen = FastOpen::kNever;
    editor_.OpenFiles(vobs, false);
  }

  // Milliseconds for changing nothing but the colours of every unit and saving them all.
  double Save(std::unique_ptr<TransactionSource> source) {
    const UnitList units = editor_.Doc().Units();
    for (const UnitPointer& unit : units) {
      if (!unit->currentColours) continue;
      (void)SetColour(Document::Unrecorded(unit),
                      ((*unit->currentColours)[kPattern] + 1) % kClutSize, kPattern);
    }
    session_.transactions.swap(source);
    const auto start = Clock::now();
    const Result result = editor_.Doc().Save(session_.job);
    const double taken = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    session_.transactions.swap(source);
    if (Failed(result)) std::exit(1);
    return taken;
  }

  std::unique_ptr<TransactionSource> Direct() {
    return std::make_unique<test::DirectTransactionSource>(*files_);
  }
  std::unique_ptr<TransactionSource> Journal() {
    return std::make_unique<JournalTransactionSource>(*files_, session_.reporter,
                                                      session_.stateFolder);
  }
  std::size_t Units() { return editor_.Doc().Units().size(); }

 private:
  std::unique_ptr<FileSystem> files_ = MakeDiskFileSystem();
  Session session_;
  CliFrontEnd frontEnd_;
  InlineJobRunner runner_;
  Editor editor_;
};

void Print(const char* name, std::vector<double> times, double beside) {
  std::sort(times.begin(), times.end());
  const double median = times[times.size() / 2];
  std::printf("| %s | %.0f | %.0f to %.0f | %.2f |\n", name, median, times.front(), times.back(),
              beside == 0 ? 1.0 : median / beside);
}

}  // namespace
}  // namespace quillomar

int main(int argc, char** argv) {
  using namespace quillomar;
  if (argc < 4) {
    std::fprintf(stderr, "usage: bench_save STATE_FOLDER RUNS VOB...\n");
    return 2;
  }
  SaveBenchmark benchmark(argv[1], {argv + 3, argv + argc});
  std::vector<double> direct;
  std::vector<double> journal;
  for (int run = 0; run < std::atoi(argv[2]); ++run) {
    direct.push_back(benchmark.Save(benchmark.Direct()));
    journal.push_back(benchmark.Save(benchmark.Journal()));
  }
  if (direct.empty()) return 2;
  std::printf("| %zu subpictures | median, ms | range, ms | beside no journal |\n",
              benchmark.Units());
  Print("one sync of each file at the end", direct, 0);
  std::sort(direct.begin(), direct.end());
  Print("with the journal", journal, direct[direct.size() / 2]);
  return 0;
}
