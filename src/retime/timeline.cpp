#include "retime/timeline.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quillomar {
namespace {

// No disc is longer than this; keeps the conversion inside its integer type.
constexpr double kLongestSeconds = 1.0e6;

// In the order in which they are tried, counted from the target.
constexpr std::array<int, kCandidates> kCandidateOffsets = {0, -1, -2, 1};

}  // namespace

std::int64_t DeltaTicks(double seconds, VideoStandard standard) {
  if (!std::isfinite(seconds)) return 0;
  const double limited = std::clamp(seconds, -kLongestSeconds, kLongestSeconds);
  const std::int64_t ticks = std::llround(limited * TicksPerSecond(standard));
  const std::int64_t frame = FrameTicks(standard);
  return ticks / frame * frame;
}

Timeline::Timeline(const std::vector<VobuEntry>& vobus) : vobus_(vobus) {
  int stretch = 0;
  for (std::size_t i = 0; i < vobus.size(); ++i) {
    if (i > 0 && vobus[i - 1].endTime > vobus[i].startTime) ++stretch;
    stretches_.push_back(stretch);
  }
}

std::size_t Timeline::LastOfStretch(std::size_t vobu) const {
  const auto after = std::upper_bound(stretches_.begin(), stretches_.end(), stretches_[vobu]);
  return static_cast<std::size_t>(after - stretches_.begin()) - 1;
}

std::size_t Timeline::WalkForward(std::size_t current, std::int64_t newTime) const {
  const std::size_t last = LastOfStretch(current);
  std::size_t index = current;
  while (index <= last && vobus_[index].startTime < newTime) ++index;
  const bool before = index > 0 && stretches_[index - 1] == stretches_[current];
  return before ? index - 1 : current;
}

std::size_t Timeline::WalkBackward(std::size_t current, std::int64_t newTime) const {
  std::size_t index = current;
  while (index > 0 && stretches_[index - 1] == stretches_[current] &&
         vobus_[index].startTime > newTime) {
    --index;
  }
  return index;
}

std::optional<std::size_t> Timeline::Target(std::size_t current, std::int64_t newTime,
                                            bool forward) const {
  if (newTime < 0 || newTime > vobus_[LastOfStretch(current)].endTime) return std::nullopt;
  return forward ? WalkForward(current, newTime) : WalkBackward(current, newTime);
}

std::pair<std::size_t, std::size_t> CandidateRange(std::size_t target, std::size_t count) {
  const auto [lowest, highest] =
      std::minmax_element(kCandidateOffsets.begin(), kCandidateOffsets.end());
  const auto below = static_cast<std::size_t>(-*lowest);
  return {target - std::min(target, below),
          std::min(target + static_cast<std::size_t>(*highest), count - 1)};
}

std::optional<Destination> ChooseDestination(const Timeline& timeline, std::size_t current,
                                             std::size_t target, std::size_t count,
                                             const std::function<bool(std::size_t)>& free) {
  for (std::size_t i = 0; i < kCandidateOffsets.size(); ++i) {
    const std::int64_t index = static_cast<std::int64_t>(target) + kCandidateOffsets[i];
    if (index < 0 || index >= static_cast<std::int64_t>(count)) continue;
    const auto vobu = static_cast<std::size_t>(index);
    if (timeline.Stretch(vobu) != timeline.Stretch(current)) continue;
    if (vobu == current || free(vobu)) return Destination{vobu, static_cast<int>(i)};
  }
  return std::nullopt;
}

}  // namespace quillomar
