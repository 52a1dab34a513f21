#include "ocr/hearing_impaired.h"

#include <algorithm>

namespace quillomar {
namespace {

// More than any line holds; a misreading engine must not keep the passes going.
constexpr int kMostPasses = 16;

// One unit, pass after pass.
class Eraser {
 public:
  Eraser(SubpictureUnit& unit, const HearingOptions& options, const OcrTools& tools)
      : unit_(unit), options_(options), tools_(tools) {}

  Result Erase() {
    if (!HasBoxes()) RunOcr(unit_, tools_);
    if (!HasBoxes()) return Result::kDone;
    if (IsAllHearingImpaired(unit_.ocrText, options_.brackets)) return Blank();
    if (options_.speakers && Failed(EraseSpeakers())) return Result::kFailed;
    return EraseBracketed();
  }

 private:
  [[nodiscard]] bool HasBoxes() const { return unit_.charBoxCount > 0; }

  Result Blank() {
    if (Failed(CutAllText(unit_, options_.cut, tools_.context))) return Result::kFailed;
    RunOcr(unit_, tools_);
    return Result::kDone;
  }

  // A second label is looked for only where a line was seen to have one: read anew, what followed
  // the first could pass for one.
  Result EraseSpeakers() {
    for (int pass = 0; pass < kMostPasses; ++pass) {
      const FoundRanges found = FindSpeakerLabels(unit_.charBoxes);
      if (found.ranges.empty()) return Result::kDone;
      if (Failed(Cut(found))) return Result::kFailed;
      if (!found.more || !HasBoxes()) return Result::kDone;
    }
    return Result::kDone;
  }

  Result EraseBracketed() {
    for (int pass = 0; pass < kMostPasses && HasBoxes(); ++pass) {
      const FoundRanges found = FindBracketedText(unit_.charBoxes, options_.brackets);
      if (found.ranges.empty()) return Result::kDone;
      if (Failed(Cut(found))) return Result::kFailed;
    }
    return Result::kDone;
  }

  Result Cut(const FoundRanges& found) {
    if (Failed(CutText(unit_, found.ranges, options_.cut, tools_.context))) return Result::kFailed;
    RunOcr(unit_, tools_);
    return Result::kDone;
  }

  SubpictureUnit& unit_;
  const HearingOptions& options_;
  const OcrTools& tools_;
};

// The range, line by line.
std::vector<BoxRange> SplitAtLines(const SubpictureUnit& unit, BoxRange range) {
  std::vector<BoxRange> ranges;
  const int end = std::min(range.last, static_cast<int>(unit.charBoxes.size()) - 1);
  for (int i = std::max(range.first, 0); i <= end; ++i) {
    const CharBox& box = unit.charBoxes[static_cast<std::size_t>(i)];
    if (box.ch == kLineEnd) continue;
    const bool goesOn =
        !ranges.empty() &&
        unit.charBoxes[static_cast<std::size_t>(ranges.back().first)].line == box.line;
    if (goesOn) {
      ranges.back().last = i;
    } else {
      ranges.push_back({i, i});
    }
  }
  return ranges;
}

}  // namespace

Result EraseHearingImpaired(SubpictureUnit& unit, const HearingOptions& options,
                            const OcrTools& tools) {
  return Eraser(unit, options, tools).Erase();
}

Result EraseSelection(SubpictureUnit& unit, BoxRange range, const CutOptions& options,
                      const OcrTools& tools) {
  if (unit.charBoxCount <= 0) return Result::kFailed;
  const std::vector<BoxRange> ranges = SplitAtLines(unit, range);
  if (ranges.empty()) return Result::kFailed;
  if (Failed(CutText(unit, ranges, options, tools.context))) return Result::kFailed;
  RunOcr(unit, tools);
  return Result::kDone;
}

}  // namespace quillomar
