#include "dvd/cell_map.h"

#include "base/format.h"
#include "dvd/big_endian.h"
#include "dvd/ifo_layout.h"
#include "dvd/vob_name.h"

namespace quillomar {
namespace {

// Far more than a disc has. A damaged IFO can claim billions, all reading the same bytes.
constexpr int kMaxSteps = 16384;
constexpr std::size_t kMaxCells = 16384;
constexpr int kMaxCellVisits = 65536;

struct ChainStreams {
  std::array<SubpictureStreamInfo, kSubpictureStreams> subpictures;
  std::array<std::optional<AudioStreamInfo>, kMaxAudioStreams> audio;
};

class CellWalk {
 public:
  CellWalk(IfoFile& ifo, CellMap& map) : ifo_(ifo), map_(map) {}

  // False when the walk has become too long.
  bool TakeUnit(int languageUnit) {
    if (++steps_ > kMaxSteps) return false;
    const int chains = ifo_.ProgramChains(languageUnit);
    for (int number = 1; number <= chains; ++number) {
      if (++steps_ > kMaxSteps) return false;
      TakeChain(languageUnit, number);
    }
    return true;
  }

 private:
  void TakeChain(int languageUnit, int number) {
    const auto clut = ifo_.Clut(languageUnit, number);
    const auto chain = clut ? ifo_.ProgramChain(languageUnit, number) : std::nullopt;
    if (!chain) return;
    map_.cluts.push_back({*clut, *clut, languageUnit, number});
    std::optional<ChainStreams> streams;
    for (int cell = 1; cell <= ifo_.Cells(*chain); ++cell) {
      const auto position = ifo_.CellPosition(*chain, cell);
      if (!position || ++visits_ > kMaxCellVisits) break;
      if (!streams) streams = StreamsOf(languageUnit, number);
      TakeCell(*position, *streams);
    }
  }

  ChainStreams StreamsOf(int languageUnit, int number) {
    ChainStreams streams;
    int id = kFirstSubpictureId;
    for (auto& info : streams.subpictures) {
      info = ifo_.SubpictureStream(languageUnit, number, id++);
    }
    int logical = 0;
    for (auto& info : streams.audio) info = ifo_.AudioStream(languageUnit, number, logical++);
    return streams;
  }

  void TakeCell(std::size_t position, const ChainStreams& streams) {
    const Vcid vcid = {GetShort(ifo_.Image(), position + kCellVobIdOffset),
                       GetByte(ifo_.Image(), position + kCellIdOffset)};
    if (map_.cells.size() >= kMaxCells && map_.Find(vcid) == nullptr) return;
    CellEntry& entry = map_.cells[vcid];
    const int chain = static_cast<int>(map_.cluts.size()) - 1;
    if (entry.chains.empty() || entry.chains.back() != chain) entry.chains.push_back(chain);
    // The first chain that has a stream says what it is, as the first chain's colours count.
    for (std::size_t i = 0; i < entry.subpictures.size(); ++i) {
      if (!entry.subpictures[i].found) entry.subpictures[i] = streams.subpictures[i];
    }
    for (std::size_t i = 0; i < entry.audio.size(); ++i) {
      if (!entry.audio[i]) entry.audio[i] = streams.audio[i];
    }
  }

  IfoFile& ifo_;
  CellMap& map_;
  int steps_ = 0;
  int visits_ = 0;
};

}  // namespace

const CellEntry* CellMap::Find(Vcid vcid) const {
  const auto found = cells.find(vcid);
  return found == cells.end() ? nullptr : &found->second;
}

std::optional<int> CellMap::ClutOf(Vcid vcid) const {
  const CellEntry* entry = Find(vcid);
  if (entry == nullptr || entry->chains.empty()) return std::nullopt;
  return entry->chains.front();
}

CellMap BuildCellMap(IfoFile& ifo, const std::string& firstVobPath) {
  CellMap map;
  CellWalk walk(ifo, map);
  if (PieceDigit(firstVobPath).value_or(0) > 0) {
    walk.TakeUnit(0);
    return map;
  }
  const int units = ifo.LanguageUnits();
  for (int unit = 1; unit <= units; ++unit) {
    if (!walk.TakeUnit(unit)) break;
  }
  return map;
}

std::string StreamLabel(int stream, const SubpictureStreamInfo& info) {
  return Format("0x%x (%c%c)", kFirstSubpictureId + stream, info.language[0], info.language[1]);
}

}  // namespace quillomar
