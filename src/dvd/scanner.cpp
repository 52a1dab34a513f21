#include "dvd/scanner.h"

#include <algorithm>

#include "base/format.h"
#include "base/platform.h"
#include "dvd/mpeg_video.h"
#include "dvd/pack.h"
#include "dvd/parallel_source.h"
#include "dvd/scan_progress.h"
#include "dvd/sector_source.h"
#include "dvd/vobu_tracker.h"

namespace quillomar {
namespace {

// One scan from its first sector to its last; the file set is laid out.
class ScanRun {
 public:
  ScanRun(const VobFileSet& set, PackConsumer& consumer, Reporter& reporter, JobControl& control,
          const ScanOptions& options, const ReadAhead& ahead, ScanResults& results)
      : set_(set),
        consumer_(consumer),
        reporter_(reporter),
        control_(control),
        options_(options),
        ahead_(ahead),
        results_(results),
        vobus_(results),
        progress_(reporter, control, set.TotalSectors()) {
    context_.highlight = &highlight_;
  }

  // Returns false when it was aborted.
  bool Run();

 private:
  void FindMpegVersion();
  bool TakeEverySector();
  bool TakeRuns(SectorSource& source);
  bool TakeRun(const SectorRun& run, std::optional<std::size_t> remaining);
  void TakeSector(SectorView sector, const SectorRun& run, std::uint32_t index);
  void TakeNavPack(SectorView sector, std::uint32_t lba);
  void TakeVideoPack(SectorView sector, std::uint32_t lba);
  void SettleStandard(const SequenceHeader& header, std::uint32_t lba);
  void TakeSubpicturePack(SectorView sector);
  void NoteHighlight();
  [[nodiscard]] bool AbortRequested() const {
    return control_.abortRequested.load(std::memory_order_relaxed);
  }
  [[nodiscard]] std::int64_t ElapsedMs() const { return MonotonicMs() - startMs_; }

  const VobFileSet& set_;
  PackConsumer& consumer_;
  Reporter& reporter_;
  JobControl& control_;
  const ScanOptions& options_;
  const ReadAhead& ahead_;
  ScanResults& results_;
  VobuTracker vobus_;
  ScanProgress progress_;
  Highlight highlight_;
  std::uint32_t highlightLba_ = 0;  // of its nav pack
  PackContext context_;
  std::int64_t startMs_ = 0;
  std::uint32_t nextLba_ = 0;
};

bool ScanRun::Run() {
  FindMpegVersion();
  startMs_ = MonotonicMs();
  bool done = false;
  if (options_.lbas) {
    ListedSource listed(set_, *options_.lbas);
    done = TakeRuns(listed);
  } else {
    done = TakeEverySector();
  }
  vobus_.Finish(nextLba_);
  progress_.ReportEnd(nextLba_, ElapsedMs(), results_.unitsFound);
  return done;
}

bool ScanRun::TakeEverySector() {
  // Video packs are looked at until one settles the standard.
  SequentialSource start(set_.Files());
  while (results_.standard == VideoStandard::kUnknown) {
    const auto run = start.NextRun();
    if (!run) return true;
    if (!TakeRun(*run, start.Remaining())) return false;
  }
  ParallelSource rest(set_.Files(), start.Next(), ahead_);
  return TakeRuns(rest);
}

bool ScanRun::TakeRuns(SectorSource& source) {
  while (const auto run = source.NextRun()) {
    if (!TakeRun(*run, source.Remaining())) return false;
  }
  return true;
}

void ScanRun::FindMpegVersion() {
  if (set_.Empty()) return;
  SequentialSource source(std::span(set_.Files()).first(1));
  while (const auto run = source.NextRun()) {
    for (std::uint32_t i = 0; i < run->count && !results_.mpeg2; ++i) {
      const SectorView sector = run->At(i);
      if (ClassifyPack(sector).kind == PackKind::kVideo) results_.mpeg2 = FindMpeg2(sector);
    }
    if (results_.mpeg2 || AbortRequested()) return;
  }
}

bool ScanRun::TakeRun(const SectorRun& run, std::optional<std::size_t> remaining) {
  for (std::uint32_t i = 0; i < run.count; ++i) {
    if (AbortRequested()) return false;
    const std::uint32_t lba = run.lba + i;
    if (ScanProgress::IsDue(lba, remaining)) {
      progress_.Report(lba, ElapsedMs(), results_.unitsFound);
    }
    if (!run.bytes.empty()) TakeSector(run.At(i), run, i);
    nextLba_ = lba + 1;
  }
  return true;
}

void ScanRun::TakeSector(SectorView sector, const SectorRun& run, std::uint32_t index) {
  const PackInfo pack = ClassifyPack(sector);
  switch (pack.kind) {
    case PackKind::kSubpicture:
      context_.fileIndex = run.fileIndex;
      context_.lba = run.lba + index;
      context_.lbaInFile = run.lbaInFile + index;
      context_.stream = pack.subStreamId - kFirstSubpictureId;
      TakeSubpicturePack(sector);
      break;
    case PackKind::kVideo:
      if (results_.standard == VideoStandard::kUnknown) TakeVideoPack(sector, run.lba + index);
      break;
    case PackKind::kNav:
      TakeNavPack(sector, run.lba + index);
      break;
    default:
      break;
  }
}

void ScanRun::TakeSubpicturePack(SectorView sector) {
  results_.highestStream = std::max(results_.highestStream, context_.stream);
  context_.unitNumber = results_.unitsFound;
  NoteHighlight();
  switch (consumer_.TakePack(sector, context_)) {
    case GatherResult::kComplete:
      if (consumer_.CompleteUnit(context_.stream, vobus_.TimeOffset())) ++results_.unitsFound;
      break;
    case GatherResult::kFailed:
      consumer_.DropUnit(context_.stream);
      break;
    case GatherResult::kNeedMore:
      break;
  }
}

// The buttons may have been defined some VOBUs before the subpicture that shows them.
void ScanRun::NoteHighlight() {
  if (highlight_.buttons.empty() || context_.buttonCount == 0) return;
  auto& navs = results_.highlightNavs;
  if (navs.empty() || navs.back() != highlightLba_) navs.push_back(highlightLba_);
}

void ScanRun::TakeVideoPack(SectorView sector, std::uint32_t lba) {
  if (const auto header = FindSequenceHeader(sector)) SettleStandard(*header, lba);
  if (!HasClosedCaptions(sector)) return;
  results_.closedCaptions = true;
  const std::string text =
      "NOTE: Closed-caption MPEG header found. This video probably has closed-captions";
  reporter_.LogLine(text);
  if (options_.alertOnClosedCaptions) reporter_.ReportError(text);
}

void ScanRun::SettleStandard(const SequenceHeader& header, std::uint32_t lba) {
  results_.standard = StandardOf(header);
  results_.videoLba = lba;
  results_.aspect = header.aspect;
  results_.frameRate = FrameRateOf(header.rate);
  const bool measured = results_.mpeg2 == true;
  results_.width = measured ? header.width : kPictureWidth;
  results_.height = measured ? header.height : FrameHeight(results_.standard);
  const char* name = IsPal(results_.standard) ? "PAL" : "NTSC";
  reporter_.LogLine(Format("Found Video Format: %s\n", name));
  reporter_.LogLine(Format("Format Video: %s\n", name), 1);
  consumer_.StandardFound(results_.standard);
}

void ScanRun::TakeNavPack(SectorView sector, std::uint32_t lba) {
  NavPack nav = ParseNavPack(sector);
  context_.vcid = nav.vcid;
  context_.navLba = lba;
  context_.buttonCount = nav.buttonCount;
  if (nav.interleaved) results_.interleaved = true;
  vobus_.TakeNavPack(sector, nav, lba);
  if (!nav.highlight) return;
  highlight_ = std::move(*nav.highlight);
  highlightLba_ = lba;
}

}  // namespace

void Scanner::Scan(const ScanOptions& options, ScanResults& results) {
  control_.operation = options.lbas ? Operation::kLoadingRecent : Operation::kScanning;
  control_.percent = 0;
  results = ScanResults{};
  set_.Validate();
  set_.LayOut();
  ScanRun scan(set_, consumer_, reporter_, control_, options, ahead_, results);
  const bool done = scan.Run();
  results.complete = done;
  if (!done) set_.ClearFullTitleDomain();
  control_.operation = done ? Operation::kDone : Operation::kAborted;
}

}  // namespace quillomar
