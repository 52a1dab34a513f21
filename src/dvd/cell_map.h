#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "dvd/clut.h"
#include "dvd/ifo_file.h"
#include "dvd/pack.h"
#include "dvd/sector.h"

namespace quillomar {

inline constexpr int kMaxAudioStreams = 8;

// What the program chains say about one cell of the multiplex.
struct CellEntry {
  std::vector<int> chains;  // indices into CellMap::cluts, in the order of the walk
  std::array<SubpictureStreamInfo, kSubpictureStreams> subpictures;
  std::array<std::optional<AudioStreamInfo>, kMaxAudioStreams> audio;
};

struct CellMap {
  std::vector<ClutRecord> cluts;  // one per program chain walked
  std::map<Vcid, CellEntry> cells;

  [[nodiscard]] const CellEntry* Find(Vcid vcid) const;
  // Index in `cluts` of the first chain that uses the cell; nothing for an unknown cell.
  [[nodiscard]] std::optional<int> ClutOf(Vcid vcid) const;
};

// Walks the title domain (first VOB is a piece 1 to 9) or every menu language unit. What several
// chains say of a cell's stream is taken from the first that has it. A damaged IFO yields at most
// 16,384 chains and as many cells.
[[nodiscard]] CellMap BuildCellMap(IfoFile& ifo, const std::string& firstVobPath);

// "0x%x (%c%c)": sub-stream id and language of a stream, 0 to 31.
[[nodiscard]] std::string StreamLabel(int stream, const SubpictureStreamInfo& info);

}  // namespace quillomar
