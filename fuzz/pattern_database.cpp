// Arbitrary files as a pattern database: the list up to the first zero byte, the rest as the image
// of pattern 1. What was loaded is taught again and must come back the same.
#include "ocr/pattern_database.h"

#include <algorithm>

#include "fuzz_target.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr const char* kList = "/db/db.lst";
constexpr const char* kImage = "/db/db_1.pbm";

void Run(ByteSpan input) {
  const auto end = std::find(input.begin(), input.end(), std::uint8_t{0});
  const ByteSpan image =
      input.subspan(std::min(static_cast<std::size_t>(end - input.begin()) + 1, input.size()));
  test::MemoryFileSystem files;
  Reporter reporter(files);
  files.Put(kList, Bytes(input.begin(), end));
  files.Put(kImage, Bytes(image.begin(), image.end()));
  PatternDatabase database(files, reporter, "/db");
  database.Load();
  const auto pattern = ParsePatternImage(image);
  Require(database.Size() <= 1 && (pattern.has_value() || database.Size() == 0));
  if (!pattern) return;
  Require(!Failed(database.Teach(*pattern, U"x")));
  PatternDatabase again(files, reporter, "/db");
  again.Load();
  Require(again.Size() == database.Size() && again.TextOf(*pattern) == U"x");
}

}  // namespace

std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (const std::string list : {"1 0 12 a\n", "1 -3 7 \xC3\xA9\n1 0 9 rn\n2 0 1 b\n"}) {
    Bytes seed(list.begin(), list.end());
    const std::string image = "P4\n# taught\n10 3\n";
    seed.push_back(0);
    seed.insert(seed.end(), image.begin(), image.end());
    seed.insert(seed.end(), {0xFF, 0xC0, 0x81, 0x40, 0x7E, 0x00});
    seeds.push_back(seed);
  }
  return seeds;
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillomar::fuzz::Run({data, size});
  return 0;
}
