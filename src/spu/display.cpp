#include <algorithm>
#include <cmath>

#include "spu/parse.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

bool HasCommand(const SubpictureUnit& unit, std::initializer_list<std::uint32_t> codes) {
  const auto wanted = [&](const SpuCommand& command) {
    return std::find(codes.begin(), codes.end(), command.code) != codes.end();
  };
  return std::any_of(unit.state.sequences.begin(), unit.state.sequences.end(),
                     [&](const ControlSequence& each) {
                       return std::any_of(each.commands.begin(), each.commands.end(), wanted);
                     });
}

// The highest alpha that each pixel type has anywhere in the unit.
PixelTypeValues HighestAlphas(const SpuState& state) {
  PixelTypeValues highest{};
  const auto raise = [&](const PixelTypeValues& alphas) {
    for (std::size_t type = 0; type < highest.size(); ++type) {
      highest[type] = std::max(highest[type], alphas[type]);
    }
  };
  for (const auto& sequence : state.sequences) {
    for (const auto& command : sequence.commands) {
      if (command.code == kSetContrast) raise(command.arguments);
    }
  }
  for (const auto& table : state.colconTables) {
    for (const auto& band : table.bands) {
      for (const auto& column : band.columns) raise(column.alphas);
    }
  }
  return highest;
}

}  // namespace

int ShownDelayMs(std::uint16_t delay, VideoStandard standard) {
  const double ms = delay * double{kDelayUnitTicks} / kTicksPerMs;
  const double frame = FrameMs(standard);
  return static_cast<int>(std::ceil(ms / frame) * frame);
}

int DelayMs(const SubpictureUnit& unit, int index, VideoStandard standard) {
  const auto& sequences = unit.state.sequences;
  const int count = static_cast<int>(sequences.size());
  if (index == -1) index = count - 1;
  if (index < 0 || index >= count) return 0;
  return ShownDelayMs(sequences[static_cast<std::size_t>(index)].delay, standard);
}

int DurationMs(const SubpictureUnit& unit, VideoStandard standard) {
  return unit.state.sequences.size() == 1 ? -1 : DelayMs(unit, -1, standard);
}

bool IsForced(const SubpictureUnit& unit) {
  return HasCommand(unit, {kForcedStart});
}

bool IsShown(SubpictureUnit& unit, const SpuContext& context) {
  if (!HasCommand(unit, {kStart, kForcedStart})) return false;
  if (!unit.state.decoded && Failed(DecodeBitmap(unit, context))) return false;
  const PixelTypeValues alphas = HighestAlphas(unit.state);
  for (std::size_t type = 0; type < alphas.size(); ++type) {
    if (alphas[type] > 0 && unit.state.statistics.pixelCounts[type] > 0) return true;
  }
  return false;
}

}  // namespace quillomar
