// Parsing, dumping, decoding and re-encoding of one arbitrary unit. The first byte says how: bit 0
// PAL, bits 1 and 2 the margins, bits 3 to 7 the free room.
#include <numeric>

#include "author/spu_builder.h"
#include "fuzz_target.h"
#include "spu/parse.h"
#include "spu/run_length.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

void Dump(const SubpictureUnit& unit, VideoStandard standard) {
  std::string line;
  int sequence = 0;
  int command = -1;
  std::size_t lines = 0;
  while (!Failed(DumpCommands(unit, standard, line, sequence, command))) ++lines;
  // A header for each sequence, a byte at least for each command.
  Require(lines <= unit.state.sequences.size() + 2 * unit.state.bytes.size());
}

void CheckBitmap(const SubpictureUnit& unit) {
  const SpuState& state = unit.state;
  const auto pixels =
      static_cast<std::size_t>(state.width) * static_cast<std::size_t>(state.height);
  Require(unit.pixels.size() == pixels);
  const auto& counts = state.statistics.pixelCounts;
  Require(std::accumulate(counts.begin(), counts.end(), std::size_t{0}) == pixels);
  const ContentBox& box = state.statistics.box;
  Require(box.left >= 0 && box.left <= box.right && box.right < state.width);
  Require(box.top >= 0 && box.top <= box.bottom && box.bottom < state.height);
  Require(state.spareRoom >= 0 && state.spareRoom <= state.TotalSize());
}

// Whether the unit was re-encoded or left alone, its bytes must read as its record says.
void CheckRecord(const SubpictureUnit& unit, const SpuContext& context) {
  SubpictureUnit again;
  again.state.bytes = unit.state.bytes;
  again.complete = true;
  Require(!Failed(ParseControlSequences(again, 0, 0, context)));
  Require(again.state.sequences == unit.state.sequences);
  Require(again.state.colconTables == unit.state.colconTables);
  Require(!Failed(DecodeBitmap(again, context)));
  Require(again.pixels == unit.pixels);
  Require(again.state.spareRoom == unit.state.spareRoom);
}

void Run(SubpictureUnit& unit, CropMargins margins, const SpuContext& context) {
  const bool parsed = !Failed(ParseControlSequences(unit, 0, 0, context));
  Dump(unit, context.standard);
  if (!parsed || Failed(DecodeBitmap(unit, context))) return;
  CheckBitmap(unit);
  const SpuState before = unit.state;
  if (Failed(ReencodeBitmap(unit, margins, context))) {
    Require(unit.state == before);
  } else {
    Require(unit.state.freeRoom + unit.state.TotalSize() == before.freeRoom + before.TotalSize());
  }
  CheckBitmap(unit);
  CheckRecord(unit, context);
}

Bytes Seed(std::uint8_t options, const author::SpuDescription& description) {
  return WithFirst(options, author::BuildSpu(description));
}

}  // namespace

std::vector<Bytes> Seeds() {
  author::SpuDescription changing =
      author::Subtitle(author::RandomRows(1, 40, 9, 20), 100, 470, 105);
  changing.sequences[0].commands.push_back(
      author::ColconCommand({{100, 120, {{8, {1, 2, 3, 4}, {5, 6, 7, 8}}}}}));
  changing.sequences.push_back({200, {author::ContrastCommand({0, 1, 2, 3})}});
  const auto wide = author::Subtitle(author::RandomRows(2, 720, 6, 300), 0, 200, 50);
  return {Seed(0, changing), Seed(0xFF, wide)};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillomar;
  if (size == 0 || size - 1 > static_cast<std::size_t>(kMaxSpuSize)) return 0;
  test::MemoryFileSystem files;
  Reporter reporter(files);
  ReportLimit limit(reporter);
  const SpuContext context{reporter, limit,
                           data[0] % 2 != 0 ? VideoStandard::kPal : VideoStandard::kNtsc};
  SubpictureUnit unit;
  unit.state.bytes.assign(data + 1, data + size);
  unit.state.freeRoom = data[0] >> 3;
  unit.complete = true;
  const int margin = data[0] >> 1 & 3;
  fuzz::Run(unit, {margin, margin}, context);
  return 0;
}
