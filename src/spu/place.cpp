#include "spu/place.h"

#include <algorithm>
#include <array>
#include <optional>

#include "dvd/big_endian.h"
#include "spu/command_bytes.h"
#include "spu/parse.h"
#include "spu/rooms.h"

namespace quillomar {
namespace {

// No band begins or ends behind it; one less than the coordinate that makes part of the end mark.
constexpr int kLastBandCoordinate = 0xFFE;
constexpr unsigned kBandBottomMask = 0xFFF;

std::uint16_t Moved(std::uint16_t coordinate, int by) {
  if (by == 0) return coordinate;
  return static_cast<std::uint16_t>(std::clamp(coordinate + by, 0, kLastBandCoordinate));
}

void MoveBand(SpuState& state, ColconBand& band, const BandPlace& found, int right, int down) {
  band.topLine = Moved(found.topLine, down);
  band.bottomLine = Moved(found.bottomLine, down);
  PutShort(state.bytes, band.offset + kBandTopOffset, band.topLine);
  const std::size_t bottomAt = band.offset + kBandBottomOffset;
  const unsigned count = GetShort(state.bytes, bottomAt) & ~kBandBottomMask;
  PutShort(state.bytes, bottomAt, static_cast<std::uint16_t>(count | band.bottomLine));
  for (std::size_t i = 0; i < band.columns.size() && i < found.startColumns.size(); ++i) {
    ColconColumn& column = band.columns[i];
    column.startColumn = Moved(found.startColumns[i], right);
    PutShort(state.bytes, column.offset + kColumnStartOffset, column.startColumn);
  }
}

// Arguments of the command that counts: the last of its kind in the first sequence.
std::optional<std::array<std::uint16_t, 4>> PresentArguments(const SpuState& state,
                                                             std::uint8_t code) {
  if (state.sequences.empty()) return std::nullopt;
  const auto& commands = state.sequences.front().commands;
  const auto found = std::find_if(commands.rbegin(), commands.rend(),
                                  [&](const SpuCommand& each) { return each.code == code; });
  return found == commands.rend() ? std::nullopt : std::optional(found->arguments);
}

}  // namespace

Result PutPlace(SubpictureUnit& unit, const Place& place, const SpuContext& context) {
  SpuState& state = unit.state;
  const auto area = PresentArguments(state, kSetDisplayArea);
  const auto offsets = PresentArguments(state, kSetFieldOffsets);
  if (!area || !offsets || SequencesOverlap(state)) return Result::kFailed;
  for (const ControlSequence& sequence : state.sequences) {
    for (const SpuCommand& command : sequence.commands) {
      const std::size_t at = command.offset + std::size_t{1};
      if (command.code == kSetDisplayArea && command.arguments == *area) {
        WriteDisplayArea(state.bytes, at, place.area);
      } else if (command.code == kSetFieldOffsets && command.arguments == *offsets) {
        PutShort(state.bytes, at, place.topOffset);
        PutShort(state.bytes, at + sizeof(std::uint16_t), place.bottomOffset);
      }
    }
  }
  return ParseControlSequences(unit, 0, 0, context);
}

std::vector<BandPlace> FindBandsAsFound(const SpuState& state) {
  const bool moved = !state.bandsAsFound.empty();
  const int left = moved ? state.areaAsFound.sx - state.area.sx : 0;
  const int up = moved ? state.areaAsFound.sy + state.hiddenRows - state.area.sy : 0;
  std::vector<BandPlace> places;
  for (const ColconTable& table : state.colconTables) {
    for (const ColconBand& band : table.bands) {
      BandPlace& place = places.emplace_back();
      place.topLine = Moved(band.topLine, up);
      place.bottomLine = Moved(band.bottomLine, up);
      for (const ColconColumn& column : band.columns) {
        place.startColumns.push_back(Moved(column.startColumn, left));
      }
    }
  }
  // Bands go with a sequence that is removed; what is left is counted back from where it stands.
  return places.size() == state.bandsAsFound.size() ? state.bandsAsFound : places;
}

void MoveBands(SpuState& state, const std::vector<BandPlace>& asFound) {
  const int right = state.area.sx - state.areaAsFound.sx;
  const int down = state.area.sy - state.areaAsFound.sy - state.hiddenRows;
  std::size_t index = 0;
  for (ColconTable& table : state.colconTables) {
    for (ColconBand& band : table.bands) {
      if (index < asFound.size()) MoveBand(state, band, asFound[index++], right, down);
    }
  }
  const bool moved = right != 0 || down != 0;
  state.bandsAsFound = moved ? asFound : std::vector<BandPlace>();
}

}  // namespace quillomar
