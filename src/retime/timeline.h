#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "dvd/scan_results.h"
#include "dvd/video_standard.h"

namespace quillomar {

// A delta in seconds as ticks of 90 kHz: rounded to the nearest tick, then toward zero to whole
// frames.
[[nodiscard]] std::int64_t DeltaTicks(double seconds, VideoStandard standard);

// Stretches of VOBUs whose times run on, by VOBU index.
class Timeline {
 public:
  explicit Timeline(const std::vector<VobuEntry>& vobus);

  // Number of the stretch that a VOBU belongs to.
  [[nodiscard]] int Stretch(std::size_t vobu) const { return stretches_[vobu]; }
  // Index of the last VOBU of the same stretch.
  [[nodiscard]] std::size_t LastOfStretch(std::size_t vobu) const;
  // The VOBU, of the same stretch as `current`, whose time span a unit at `newTime` (90 kHz)
  // belongs to; `forward`: the unit moves to a later time. Nothing before time 0 and past the end.
  [[nodiscard]] std::optional<std::size_t> Target(std::size_t current, std::int64_t newTime,
                                                  bool forward) const;

 private:
  [[nodiscard]] std::size_t WalkForward(std::size_t current, std::int64_t newTime) const;
  [[nodiscard]] std::size_t WalkBackward(std::size_t current, std::int64_t newTime) const;

  const std::vector<VobuEntry>& vobus_;
  std::vector<int> stretches_;
};

inline constexpr int kCandidates = 4;

// VOBUs that may be chosen for a target, first and last, in a list of `count`.
[[nodiscard]] std::pair<std::size_t, std::size_t> CandidateRange(std::size_t target,
                                                                 std::size_t count);

struct Destination {
  std::size_t vobu = 0;
  int candidate = 0;  // number of the candidate taken, 0 to 3
};

// Where a unit goes from VOBU `current`: nothing when no candidate near the target is `free`. The
// current VOBU as destination means that it stays.
[[nodiscard]] std::optional<Destination> ChooseDestination(
    const Timeline& timeline, std::size_t current, std::size_t target, std::size_t count,
    const std::function<bool(std::size_t)>& free);

}  // namespace quillomar
