#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "dvd/pack.h"
#include "dvd/scan_results.h"
#include "retime/pack_index.h"
#include "retime/timeline.h"

namespace quillomar {

// Which unit of each stream is on screen during each VOBU, as a state that can be kept.
class ShownUnits {
 public:
  ShownUnits(const RetimedUnits& units, const std::vector<VobuEntry>& vobus,
             const Timeline& timeline);

  [[nodiscard]] bool HasStream(int stream) const { return !Of(stream).empty(); }
  // Index of the VOBU that holds the first pack of the first unit shown while VOBU `index` plays;
  // nothing when none is.
  [[nodiscard]] std::optional<std::size_t> ShownDuring(int stream, std::size_t index,
                                                       const std::vector<VobuEntry>& vobus,
                                                       const Timeline& timeline) const;

 private:
  struct Shown {
    int stretch = 0;
    std::int64_t start = 0, end = 0;  // 90 kHz, in the stretch
    std::size_t vobu = 0;
  };
  [[nodiscard]] const std::vector<Shown>& Of(int stream) const {
    return streams_[static_cast<std::size_t>(stream)];
  }

  std::array<std::vector<Shown>, kSubpictureStreams> streams_;
};

}  // namespace quillomar
