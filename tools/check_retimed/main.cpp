// check_retimed FOLDER UNTOUCHED: what a retiming has damaged in title set 1 of FOLDER, a VIDEO_TS
// folder, beside a copy from before. Prints a line for each fault; the exit code is 1 when there
// are any.
#include <cstdio>

#include "check_retimed/checkers.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: check_retimed FOLDER UNTOUCHED\n");
    return 2;
  }
  using namespace quillomar::check;
  const DiscModel disc(argv[1]);
  const DiscModel untouched(argv[2]);
  Faults faults = CheckNavigation(disc, untouched);
  const Faults mux = CheckMux(disc, untouched);
  faults.insert(faults.end(), mux.begin(), mux.end());
  const int played = PlayWithDvdnav(argv[1]);
  if (played < 0 || played != PlayWithDvdnav(argv[2])) {
    faults.emplace_back("libdvdnav does not play it as before");
  }
  for (const std::string& fault : faults) std::printf("%s\n", fault.c_str());
  return faults.empty() ? 0 : 1;
}
