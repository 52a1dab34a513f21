#include "retime/shown_units.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace quillomar {
namespace {

std::int64_t EndOf(const SubpictureUnit& unit) {
  const auto& sequences = unit.state.sequences;
  if (sequences.size() < 2) return std::numeric_limits<std::int64_t>::max();
  return std::int64_t{unit.state.pts} + std::int64_t{sequences.back().delay} * kDelayUnitTicks;
}

}  // namespace

ShownUnits::ShownUnits(const RetimedUnits& units, const std::vector<VobuEntry>& vobus,
                       const Timeline& timeline) {
  for (const auto& unit : units) {
    const auto vobu = VobuAt(vobus, unit->Lba());
    if (!vobu) continue;
    streams_[static_cast<std::size_t>(unit->stream)].push_back(
        {timeline.Stretch(*vobu), unit->state.pts, EndOf(*unit), *vobu});
  }
  for (auto& shown : streams_) {
    std::stable_sort(shown.begin(), shown.end(), [](const Shown& a, const Shown& b) {
      return std::tie(a.stretch, a.start) < std::tie(b.stretch, b.start);
    });
    // A unit without an end gives way to the next one.
    for (std::size_t i = 0; i + 1 < shown.size(); ++i) {
      if (shown[i + 1].stretch == shown[i].stretch) {
        shown[i].end = std::min(shown[i].end, std::max(shown[i].start, shown[i + 1].start));
      }
    }
  }
}

std::optional<std::size_t> ShownUnits::ShownDuring(int stream, std::size_t index,
                                                   const std::vector<VobuEntry>& vobus,
                                                   const Timeline& timeline) const {
  const std::vector<Shown>& shown = Of(stream);
  const VobuEntry& vobu = vobus[index];
  const int stretch = timeline.Stretch(index);
  // Ends are in order as starts are: none lies behind the next start.
  const auto first = std::partition_point(shown.begin(), shown.end(), [&](const Shown& each) {
    return each.stretch != stretch ? each.stretch < stretch : each.end <= vobu.startTime;
  });
  if (first == shown.end() || first->stretch != stretch || first->start >= vobu.endTime) {
    return std::nullopt;
  }
  return first->vobu;
}

}  // namespace quillomar
