// Runs a fuzz target without a fuzzer:
//   replay_x [CORPUS]            its seeds, each whole, cut off and with single bytes turned over,
//                                then every file of the folder CORPUS
//   replay_x --write-seeds DIR   writes the seeds as files
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz_target.h"

namespace quillomar::fuzz {
namespace {

// Headers stand at the front: every position up to here is damaged, behind it one in 37, a step
// that falls on another place in each sector.
constexpr std::size_t kEveryPosition = 2048;
constexpr std::size_t kStep = 37;

std::size_t NextPosition(std::size_t position) {
  return position + (position < kEveryPosition ? 1 : kStep);
}

// A copy of exactly this size, so that a sanitizer sees a read past its end.
void RunCopy(const Bytes& input, std::size_t size) {
  const Bytes copy(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(copy.data(), copy.size());
}

std::size_t RunDamaged(Bytes seed) {
  RunCopy(seed, seed.size());
  std::size_t runs = 1;
  for (std::size_t i = 0; i < seed.size(); i = NextPosition(i), runs += 2) {
    RunCopy(seed, i);
    seed[i] ^= 0xFF;
    RunCopy(seed, seed.size());
    seed[i] ^= 0xFF;
  }
  return runs;
}

std::size_t RunCorpus(const std::filesystem::path& folder) {
  std::size_t runs = 0;
  if (!std::filesystem::is_directory(folder)) return runs;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream stream(entry.path(), std::ios::binary);
    const Bytes input(std::istreambuf_iterator<char>(stream), {});
    RunCopy(input, input.size());
    ++runs;
  }
  return runs;
}

bool WriteSeeds(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  int number = 0;
  for (const Bytes& seed : Seeds()) {
    std::ofstream stream(folder / ("seed" + std::to_string(number++)), std::ios::binary);
    stream.write(reinterpret_cast<const char*>(seed.data()),
                 static_cast<std::streamsize>(seed.size()));
    if (!stream.flush()) return false;
  }
  return true;
}

}  // namespace
}  // namespace quillomar::fuzz

int main(int argc, char** argv) {
  using namespace quillomar::fuzz;
  if (argc == 3 && std::string(argv[1]) == "--write-seeds") return WriteSeeds(argv[2]) ? 0 : 1;
  std::size_t runs = 0;
  for (const quillomar::Bytes& seed : Seeds()) runs += RunDamaged(seed);
  if (runs == 0) {
    std::fprintf(stderr, "no seeds\n");
    return 1;
  }
  if (argc > 1) runs += RunCorpus(argv[1]);
  std::printf("%zu inputs\n", runs);
  return 0;
}
