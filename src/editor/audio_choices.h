#pragma once

#include <string>
#include <vector>

#include "dvd/cell_map.h"

namespace quillomar {

// An audio stream in the list of those to play.
struct AudioChoice {
  std::string label;
  int subStreamId = 0;  // kNoAudio for one that cannot be played
};

// The streams of a cell in their order. Where the program chains are unknown (null), the first one
// of either kind that can be played.
[[nodiscard]] std::vector<AudioChoice> AudioChoicesOf(const CellEntry* cell);

}  // namespace quillomar
