#include "ocr/disc_run.h"

#include <algorithm>

#include "ocr/parallel_for.h"

namespace quillomar {
namespace {

// Early rounds are small, so that what they teach saves reading; sizes do not depend on the number
// of processors, or the results would.
constexpr std::size_t kFirstRound = 16;
constexpr std::size_t kLargestRound = 64;
constexpr std::size_t kPasses = 2;

}  // namespace

DiscRun::DiscRun(const PictureSource& pictures, const EngineSettings& settings,
                 DiscKnowledge& knowledge, const PatternDatabase& taught,
                 RecogniserPool& recognisers, EngineProgress progress)
    : pictures_(pictures),
      settings_(settings),
      knowledge_(knowledge),
      reader_(knowledge, taught, settings.spaceWidth),
      recognisers_(recognisers),
      progress_(std::move(progress)),
      pages_(pictures.Count()) {}

std::vector<std::optional<EngineResult>> DiscRun::Run() {
  Measure();
  std::size_t read = 0;
  for (std::size_t size = kFirstRound; read < pages_.size() && !Stopped();) {
    const std::size_t end = std::min(read + size, pages_.size());
    ReadRound(read, end);
    read = end;
    size = std::min(size * 2, kLargestRound);
  }
  std::vector<std::optional<EngineResult>> results(pages_.size());
  ParallelFor(read, [&](std::size_t worker, std::size_t index) {
    if (Stopped()) return;
    results[index] = SettlePage(index, worker);
    Count();
  });
  return results;
}

void DiscRun::Measure() {
  ParallelFor(pages_.size(), [&](std::size_t, std::size_t index) {
    if (!GoesOn()) return;
    const EnginePicture picture = pictures_.Get(index);
    pages_[index].language = picture.language;
    pages_[index].measured = MeasureLines(picture, settings_.italics);
  });
  for (const Page& page : pages_) {
    for (const MeasuredLine& line : page.measured) LearnMeasures(line, knowledge_);
  }
  ParallelFor(pages_.size(), [&](std::size_t, std::size_t index) {
    for (const MeasuredLine& line : pages_[index].measured) {
      pages_[index].lines.push_back(PrepareLine(line, knowledge_));
    }
    std::vector<MeasuredLine>().swap(pages_[index].measured);
  });
}

void DiscRun::ReadRound(std::size_t begin, std::size_t end) {
  ParallelFor(end - begin, [&](std::size_t worker, std::size_t index) {
    if (Stopped()) return;
    ReadPage(pages_[begin + index], begin + index, worker);
    Count();
  });
  if (learns_ && !Stopped()) Learn(begin, end);
}

void DiscRun::ReadPage(Page& page, std::size_t index, std::size_t worker) {
  std::optional<EnginePicture> picture;
  for (LineText& line : page.lines) {
    if (line.recognised || reader_.ReadFromPatterns(line, page.language)) continue;
    if (!GoesOn()) return;
    LineRecogniser* recogniser = recognisers_.For(worker, page.language);
    if (recogniser == nullptr) continue;
    if (!picture) picture = pictures_.Get(index);
    reader_.Recognise(line, *picture, *recogniser, page.language);
  }
}

void DiscRun::Learn(std::size_t begin, std::size_t end) {
  for (std::size_t index = begin; index < end; ++index) {
    for (const LineText& line : pages_[index].lines) {
      if (line.recognised) LearnText(line, knowledge_);
    }
  }
  knowledge_.spaces.Settle();
}

std::optional<EngineResult> DiscRun::SettlePage(std::size_t index, std::size_t worker) {
  Page& page = pages_[index];
  // What seemed well known may have become doubtful since.
  ReadPage(page, index, worker);
  EngineResult result;
  for (LineText& line : page.lines) {
    if (!GoesOn()) return {};
    reader_.Settle(line, page.language);
    reader_.Append(line, result);
  }
  return result;
}

bool DiscRun::Stopped() {
  const std::lock_guard lock(mutex_);
  return stopped_;
}

bool DiscRun::GoesOn() {
  const std::lock_guard lock(mutex_);
  Ask();
  return !stopped_;
}

void DiscRun::Count() {
  const std::lock_guard lock(mutex_);
  ++stepsDone_;
  Ask();
}

void DiscRun::Ask() {
  if (progress_ && !progress_(stepsDone_, kPasses * pages_.size())) stopped_ = true;
}

}  // namespace quillomar
