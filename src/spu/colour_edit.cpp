#include "spu/colour_edit.h"

#include <algorithm>

#include "dvd/big_endian.h"
#include "spu/rooms.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// The first command with that code in a sequence; null when there is none.
template <typename Unit>
auto CommandOf(Unit& unit, std::uint8_t code, int sequence)
    -> decltype(unit.state.sequences.front().commands.data()) {
  auto& sequences = unit.state.sequences;
  if (!unit.complete || sequence < 0 || sequence >= static_cast<int>(sequences.size())) {
    return nullptr;
  }
  auto& commands = sequences[static_cast<std::size_t>(sequence)].commands;
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [code](const SpuCommand& each) { return each.code == code; });
  return found == commands.end() ? nullptr : &*found;
}

std::optional<PixelTypeValues> ValuesOf(const SubpictureUnit& unit, std::uint8_t code,
                                        int sequence) {
  const SpuCommand* command = CommandOf(unit, code, sequence);
  if (command == nullptr) command = CommandOf(unit, code, 0);
  if (command == nullptr) return std::nullopt;
  return command->arguments;
}

void StoreValues(SpuState& state, SpuCommand& command, const PixelTypeValues& values) {
  const std::uint16_t word = PackPixelTypeValues(values);
  command.arguments = UnpackPixelTypeValues(word);
  PutShort(state.bytes, command.offset + std::size_t{1}, word);
}

// Hands `edit` the command of each sequence that an edit touches; afterwards the current sequence
// is selected again, so that it shows the new values.
template <typename Edit>
void ForEachCommand(SubpictureUnit& unit, std::uint8_t code, Edit edit) {
  const int current = unit.currentSequence;
  const int count = static_cast<int>(unit.state.sequences.size());
  const int first = unit.allSequences ? 0 : current;
  const int end = unit.allSequences ? count : current + 1;
  for (int sequence = first; sequence < end; ++sequence) {
    if (SpuCommand* command = CommandOf(unit, code, sequence)) edit(*command);
  }
  SelectControlSequence(unit, current);
}

}  // namespace

std::optional<int> FindCommand(const SubpictureUnit& unit, std::uint8_t code, int sequence) {
  const SpuCommand* command = CommandOf(unit, code, sequence);
  if (command == nullptr) return std::nullopt;
  return command->offset;
}

std::optional<int> SelectControlSequence(SubpictureUnit& unit, int index) {
  if (index < 0 || index >= static_cast<int>(unit.state.sequences.size())) return std::nullopt;
  unit.currentColours = ValuesOf(unit, kSetColour, index);
  unit.currentAlphas = ValuesOf(unit, kSetContrast, index);
  unit.currentSequence = index;
  return FindCommand(unit, kSetContrast, index);
}

Result SetColour(SubpictureUnit& unit, int clutIndex, int pixelType) {
  if (clutIndex < 0 || clutIndex > 15 || pixelType < 0 || pixelType >= kPixelTypes) {
    return Result::kFailed;
  }
  if (SequencesOverlap(unit.state)) return Result::kFailed;
  const auto type = static_cast<std::size_t>(pixelType);
  const auto index = static_cast<std::uint16_t>(clutIndex);
  ForEachCommand(unit, kSetColour, [&](SpuCommand& command) {
    PixelTypeValues values = command.arguments;
    if (values[type] != index) unit.state.modified = true;
    values[type] = index;
    StoreValues(unit.state, command, values);
  });
  return Result::kDone;
}

Result SetAlpha(SubpictureUnit& unit, int alpha, int which, const SpuContext& context) {
  if (alpha < 0 || alpha > 15 || which < 0) return Result::kFailed;
  if (SequencesOverlap(unit.state)) return Result::kFailed;
  const bool sparesBackground = which == kAlphaAllButBackground;
  if (sparesBackground && !unit.state.decoded && Failed(DecodeBitmap(unit, context))) {
    return Result::kFailed;
  }
  ForEachCommand(unit, kSetContrast, [&](SpuCommand& command) {
    PixelTypeValues values = command.arguments;
    for (int type = 0; type < kPixelTypes; ++type) {
      const bool wanted = sparesBackground ? type != unit.state.statistics.backgroundType
                                           : which > kAlphaAllButBackground || type == which;
      if (wanted) values[static_cast<std::size_t>(type)] = static_cast<std::uint16_t>(alpha);
    }
    StoreValues(unit.state, command, values);
  });
  unit.state.modified = true;
  return Result::kDone;
}

int MeanTextAlpha(SubpictureUnit& unit, const SpuContext& context) {
  if (!unit.state.decoded && Failed(DecodeBitmap(unit, context))) return 0;
  if (!unit.currentAlphas) return 0;
  const BitmapStatistics& statistics = unit.state.statistics;
  int sum = 0;
  int count = 0;
  for (int type = 0; type < kPixelTypes; ++type) {
    const auto index = static_cast<std::size_t>(type);
    if (type == statistics.backgroundType || statistics.pixelCounts[index] == 0) continue;
    sum += (*unit.currentAlphas)[index];
    ++count;
  }
  return count == 0 ? 0 : static_cast<int>((sum + 0.5) / count);
}

}  // namespace quillomar
