#include "ocr/spacing.h"

#include <algorithm>

namespace quillomar {
namespace {

constexpr std::size_t kFewGaps = 25;
constexpr int kFewSpaces = 4;
// Gaps that tell on their own, as shares of the threshold.
constexpr double kSurelyNone = 0.8, kSurelySpace = 1.2, kSurelyWithRoom = 1.9;
constexpr double kUnsureAlone = 0.1;

}  // namespace

void SpaceModel::Learn(double gap, bool partsWords) {
  gaps_.push_back({gap, partsWords});
}

void SpaceModel::Settle() {
  std::vector<Gap> sorted = gaps_;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const Gap& a, const Gap& b) { return a.width < b.width; });
  const auto spaces =
      std::count_if(sorted.begin(), sorted.end(), [](const Gap& gap) { return gap.partsWords; });
  if (sorted.size() < kFewGaps || spaces < kFewSpaces) return;
  // With the threshold below all gaps, every one of them would be a space.
  auto errors = static_cast<std::ptrdiff_t>(sorted.size()) - spaces;
  std::ptrdiff_t least = errors + 1;
  for (std::size_t i = 0; i + 1 < sorted.size(); ++i) {
    errors += sorted[i].partsWords ? 1 : -1;
    const double step = sorted[i + 1].width - sorted[i].width;
    if (step <= 0 || errors >= least) continue;
    least = errors;
    threshold_ = (sorted[i].width + sorted[i + 1].width) / 2;
  }
}

std::optional<bool> SpaceModel::Judge(double gap, double pixel, bool hasRoom) const {
  if (!threshold_) return {};
  if (gap < kSurelyNone * *threshold_ - pixel / 2) return false;
  const double most =
      hasRoom ? kSurelyWithRoom * *threshold_ + pixel : kSurelySpace * *threshold_ + pixel / 2;
  if (gap > most) return true;
  return {};
}

std::optional<bool> SpaceModel::JudgeAlone(double gap) const {
  if (!threshold_) return {};
  if (gap < (1 - kUnsureAlone) * *threshold_) return false;
  if (gap > (1 + kUnsureAlone) * *threshold_) return true;
  return {};
}

}  // namespace quillomar
