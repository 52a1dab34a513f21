#pragma once

#include <mutex>
#include <optional>
#include <vector>

#include "ocr/line_learning.h"
#include "ocr/line_measure.h"
#include "ocr/line_reader.h"
#include "ocr/recogniser_pool.h"

namespace quillomar {

// Reads all pictures of a disc: first, in rounds of growing size, the recogniser those lines that
// hold glyphs not yet well known; then all lines are decided by what the whole disc taught.
class DiscRun {
 public:
  DiscRun(const PictureSource& pictures, const EngineSettings& settings, DiscKnowledge& knowledge,
          const PatternDatabase& taught, RecogniserPool& recognisers, EngineProgress progress);
  // Uses what is known of the disc without adding to it, but for measures of size and slant.
  void KeepKnowledge() { learns_ = false; }
  [[nodiscard]] std::vector<std::optional<EngineResult>> Run();

 private:
  struct Page {
    std::vector<MeasuredLine> measured;
    std::vector<LineText> lines;
    std::string language;
  };

  void Measure();
  void ReadRound(std::size_t begin, std::size_t end);
  void ReadPage(Page& page, std::size_t index, std::size_t worker);
  void Learn(std::size_t begin, std::size_t end);
  // Nothing when it was stopped.
  [[nodiscard]] std::optional<EngineResult> SettlePage(std::size_t index, std::size_t worker);
  [[nodiscard]] bool Stopped();
  // Asks the progress: one picture may hold a great many lines.
  [[nodiscard]] bool GoesOn();
  void Count();
  void Ask();

  const PictureSource& pictures_;
  EngineSettings settings_;
  DiscKnowledge& knowledge_;
  LineReader reader_;
  RecogniserPool& recognisers_;
  EngineProgress progress_;
  bool learns_ = true;
  std::vector<Page> pages_;
  std::mutex mutex_;  // of what follows
  std::size_t stepsDone_ = 0;
  bool stopped_ = false;
};

}  // namespace quillomar
