// Pack classification, nav packs and the scan, over an arbitrary VOB image. The first byte says how
// the image is scanned: bit 0 by a list of sectors, bits 1 to 3 where it is cut into two pieces.
#include <algorithm>

#include "author/pack_builder.h"
#include "dvd/pack.h"
#include "dvd/scanner.h"
#include "fuzz_target.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

using author::MakeNavPack;
using author::MakeVideoPack;

// Ends a unit as its first byte says, so that all answers occur.
class CheckingConsumer final : public PackConsumer {
 public:
  GatherResult TakePack(SectorView pack, const PackContext& context) override {
    Require(ClassifyPack(pack).kind == PackKind::kSubpicture);
    Require(context.stream >= 0 && context.stream < kSubpictureStreams);
    Require(context.navLba <= context.lba && context.lbaInFile <= context.lba);
    Require(context.highlight->buttons.size() <= kMaxButtons);
    const auto payload = PesPayload(pack);
    if (payload.size() < 2) return GatherResult::kFailed;
    return payload[1] % 2 == 0 ? GatherResult::kComplete : GatherResult::kNeedMore;
  }
  bool CompleteUnit(int stream, std::int64_t) override { return stream % 2 == 0; }
  void StandardFound(VideoStandard standard) override {
    Require(standard != VideoStandard::kUnknown);
  }
  void DropUnit(int) override {}
};

void CheckResults(const ScanResults& results, std::uint32_t sectors) {
  Require(results.scannedStarts.size() == results.vobus.size() + 1);
  Require(std::is_sorted(results.scannedStarts.begin(), results.scannedStarts.end()));
  Require(results.scannedStarts.back() <= sectors);
  std::uint32_t covered = 0;
  for (const VobuEntry& entry : results.vobus) covered += entry.length;
  Require(covered <= sectors);
  Require(results.timeRestarts.size() <= 2 * results.vobus.size());
  Require(results.unitsFound == 0 || results.highestStream >= 0);
}

}  // namespace

std::vector<Bytes> Seeds() {
  const Highlight highlight{.buttons = {{.colourNumber = 1, .x = 9, .width = 9, .left = 1}}};
  const auto subpicture = author::MakeSubpicturePacks(Bytes(2100, 0x22), {.firstHeaderLength = 8});
  author::VobBuilder vob;
  vob.Add(MakeNavPack({.startTime = 900, .endTime = 45900, .highlight = highlight}));
  vob.Add(MakeVideoPack(0, {author::SequenceHeader(720, 480, 2), author::SequenceExtension(),
                            author::PictureHeader(1), author::ClosedCaptions()}));
  vob.Add(subpicture).Add(author::MakePrivatePack(0, 0x80)).Add(MakeNavPack({.clock = 90000}));
  return {WithFirst(0, vob.Image()), WithFirst(5, vob.Image())};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillomar;
  if (size == 0) return 0;
  const ByteSpan image(data + 1, size - 1);
  const std::size_t cut = std::min<std::size_t>(image.size(), (data[0] >> 1 & 7) * kSectorSize);
  test::MemoryFileSystem files;
  files.Put("/VTS_01_1.VOB",
            Bytes(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(cut)));
  files.Put("/VTS_01_2.VOB", Bytes(image.begin() + static_cast<std::ptrdiff_t>(cut), image.end()));
  Reporter reporter(files);
  VobFileSet set(files, reporter);
  fuzz::Require(!Failed(set.OpenFullDomain("/VTS_01_1.VOB")));

  ScanOptions options;
  if ((data[0] & 1) != 0) options.lbas = {0, 2, 3, 5, 0xFFFFFFFF};
  fuzz::CheckingConsumer consumer;
  JobControl control;
  ScanResults results;
  Scanner(set, consumer, reporter, control).Scan(options, results);
  fuzz::Require(control.operation == Operation::kDone);
  fuzz::CheckResults(results, set.TotalSectors());
  return 0;
}
