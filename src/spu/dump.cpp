#include <algorithm>

#include "base/format.h"
#include "spu/parse.h"

namespace quillomar {
namespace {

// The dump is shown in a rich-text pane; of its lines only these bring their own paragraph mark.
constexpr const char* kColconLineEnd = "\n\\par ";

std::string HeaderLine(const SubpictureUnit& unit, VideoStandard standard, int sequence) {
  if (sequence == 0) return Format("DCSQT: %d\n", sequence);
  return Format("DCSQT: %d -- Delay %.3fs\n", sequence, DelayMs(unit, sequence, standard) * 0.001);
}

std::string ColconColumnLines(const ColconColumn& column, int index) {
  const auto& colours = column.colours;
  const auto& alphas = column.alphas;
  return Format("    %d -- Start column %d", index, column.startColumn) + kColconLineEnd +
         Format("     New colors: %d %d %d %d", colours[0], colours[1], colours[2], colours[3]) +
         kColconLineEnd +
         Format("     New alphas: %d %d %d %d", alphas[0], alphas[1], alphas[2], alphas[3]) +
         kColconLineEnd;
}

std::string ColconLines(const ColconTable& table) {
  std::string text = std::string("  CHG_COLCON") + kColconLineEnd;
  text += Format("  Number of bands %d", static_cast<int>(table.bands.size())) + kColconLineEnd;
  int bandIndex = 0;
  for (const ColconBand& band : table.bands) {
    text +=
        Format("   %d - Number of columns %d", bandIndex++, static_cast<int>(band.columns.size())) +
        kColconLineEnd;
    text += Format("    Top Line %d", band.topLine) + kColconLineEnd;
    text += Format("    Bot. Line %d", band.bottomLine) + kColconLineEnd;
    int columnIndex = 0;
    for (const ColconColumn& column : band.columns) {
      text += ColconColumnLines(column, columnIndex++);
    }
  }
  return text;
}

// The table that belongs to a CHG_COLCON command: tables stand in the order of their commands.
const ColconTable* FindColconTable(const SpuState& state, std::size_t sequence,
                                   std::size_t command) {
  const auto& commands = state.sequences[sequence].commands;
  const auto isColcon = [](const SpuCommand& each) { return each.code == kChangeColcon; };
  auto before = std::count_if(commands.begin(),
                              commands.begin() + static_cast<std::ptrdiff_t>(command), isColcon);
  for (const ColconTable& table : state.colconTables) {
    if (table.sequence == sequence && before-- == 0) return &table;
  }
  return nullptr;
}

std::string CommandLine(const SpuState& state, std::size_t sequence, std::size_t index) {
  const SpuCommand& command = state.sequences[sequence].commands[index];
  const auto& words = command.arguments;
  switch (command.code) {
    case kForcedStart:
      return "  Forced Start\n";
    case kStart:
      return "  Start\n";
    case kStop:
      return "  Stop\n";
    case kSetColour:
      return Format("  Set Color: e2=%d e1=%d p=%d b=%d\n", words[3], words[2], words[1], words[0]);
    case kSetContrast:
      return Format("  Set Transparency: e2=%d e1=%d p=%d b=%d\n", words[3], words[2], words[1],
                    words[0]);
    case kSetDisplayArea:
      return Format("  Set Display Area: sx=%d ex=%d sy=%d ey=%d \n", words[3], words[2], words[1],
                    words[0]);
    case kSetFieldOffsets:
      return "  Set field indexes\n";
    case kChangeColcon: {
      const ColconTable* table = FindColconTable(state, sequence, index);
      return table != nullptr ? ColconLines(*table) : std::string();
    }
    case kEndOfCommands:
      return "  End of commands\n";
    default:
      return {};
  }
}

}  // namespace

Result DumpCommands(const SubpictureUnit& unit, VideoStandard standard, std::string& text,
                    int& sequence, int& command) {
  text.clear();
  const auto& sequences = unit.state.sequences;
  const auto at = static_cast<std::size_t>(sequence);
  if (sequence < 0 || at >= sequences.size()) {
    sequence = 0;
    command = -1;
    return Result::kFailed;
  }
  const int count = static_cast<int>(sequences[at].commands.size());
  if (command < 0) {
    text = HeaderLine(unit, standard, sequence);
    command = 0;
  } else if (command < count) {
    text = CommandLine(unit.state, at, static_cast<std::size_t>(command));
    ++command;
  }
  if (command >= count) {
    command = -1;
    ++sequence;
  }
  return Result::kDone;
}

}  // namespace quillomar
