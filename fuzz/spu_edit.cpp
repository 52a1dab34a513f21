// Edit scripts over an arbitrary unit. The first byte is the number of steps, the second and third
// are the free room; the steps follow, then the unit, whose size field is mended as gathering would
// have demanded it.
#include <algorithm>

#include "spu/colour_edit.h"
#include "support/edit_script.h"
#include "unit_input.h"

namespace quillomar::fuzz {
namespace {

constexpr std::size_t kHeaderSize = 3;
constexpr std::size_t kStepSize = 4;

Bytes Seed(std::uint16_t freeRoom, const std::vector<Bytes>& steps,
           const author::SpuDescription& description) {
  Bytes input(kHeaderSize);
  input[0] = static_cast<std::uint8_t>(steps.size());
  PutShort(input, 1, freeRoom);
  for (const Bytes& step : steps) input.insert(input.end(), step.begin(), step.end());
  return WithUnit(std::move(input), description);
}

}  // namespace

std::vector<Bytes> Seeds() {
  auto subtitle = author::Subtitle({"00000000", "01123300"}, 16, 400, 300);
  subtitle.spareBytes = 40;
  auto banded = author::Subtitle({"0123", "3210", "0011"}, 16, 400, 90);
  const auto bands = author::ColconCommand({{400, 401, {{16, {1, 2, 3, 4}, {5, 6, 7, 8}}}}});
  banded.sequences[0].commands.push_back(bands);
  banded.sequences.insert(banded.sequences.begin() + 1, {30, {bands}});
  return {Seed(100,
               {{2, 0, 0, 0}, {6, 1, 8, 0}, {7, 0, 0, 0}, {5, 0, 0, 0}, {3, 0, 0, 0}, {4, 0, 0, 0}},
               subtitle),
          Seed(30, {{0, 3, 0x12, 0x3F}, {1, 3, 0, 0}, {8, 0, 0, 0}, {9, 2, 0, 7}, {10, 4, 0, 9}},
               banded),
          Seed(60,
               {{0xC0, 0, 0, 20},
                {0xC1, 0, 0, 0xF1},
                {0xC2, 0, 0x80, 30},
                {0xC3, 2, 0, 1},
                {0xC1, 0, 0x80, 99},
                {0xC0, 0, 0, 0xE0}},
               banded),
          Seed(60, {{0xC3, 2, 0, 0}, {0xC1, 0, 0, 90}, {6, 1, 9, 0}, {0xC2, 1, 0, 60}}, subtitle)};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillomar;
  const ByteSpan input(data, size);
  if (size < fuzz::kHeaderSize) return 0;
  const std::size_t scriptSize = std::min(input[0] * fuzz::kStepSize, size - fuzz::kHeaderSize) /
                                 fuzz::kStepSize * fuzz::kStepSize;
  fuzz::UnitInput taken;
  if (!taken.Take(input.subspan(fuzz::kHeaderSize + scriptSize), GetShort(input, 1))) return 0;
  SelectControlSequence(taken.unit, 0);
  const ByteSpan script = input.subspan(fuzz::kHeaderSize, scriptSize);
  fuzz::Require(test::RunEditScript(taken.unit, script, taken.context).empty());
  return 0;
}
