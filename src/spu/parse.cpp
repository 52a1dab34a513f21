#include "spu/parse.h"

#include "base/format.h"
#include "dvd/big_endian.h"
#include "spu/command_bytes.h"

namespace quillomar {
namespace {

constexpr int kAreaAlignment = 4;

void SetArea(SpuState& state, const DisplayArea& area, VideoStandard standard) {
  state.area = area;
  if (!state.decoded) state.areaAsFound = area;
  state.width = area.Columns();
  state.height = area.LinesInFrame(FrameHeight(standard));
  state.alignedWidth = (state.width + kAreaAlignment - 1) / kAreaAlignment * kAreaAlignment;
}

// Reads the chain from one sequence to its end.
class ChainParser {
 public:
  ChainParser(SubpictureUnit& unit, const SpuContext& context)
      : unit_(unit), state_(unit.state), bytes_(unit.state.bytes), context_(context) {}

  Result ParseChain(std::size_t offset) {
    if (bytes_.size() < kSpuHeaderSize) return BadOffset(offset);
    for (;;) {
      // Sequences that lie over each other would multiply into more commands than memory holds.
      if (offset >= bytes_.size() || read_ > bytes_.size()) return BadOffset(offset);
      if (Failed(ParseSequence(offset))) return Result::kFailed;
      const std::uint16_t next = state_.sequences.back().nextOffset;
      if (next == offset) return Result::kDone;
      if (next < offset) return BadOffset(next);
      offset = next;
    }
  }

 private:
  Result ParseSequence(std::size_t offset) {
    ControlSequence& sequence = state_.sequences.emplace_back();
    sequence.delay = GetShort(bytes_, offset + kSequenceDelayOffset);
    sequence.ownOffset = static_cast<std::uint16_t>(offset);
    sequence.nextOffset = GetShort(bytes_, offset + kSequenceNextOffset);
    std::size_t at = offset + kSequenceHeaderSize;
    while (at < bytes_.size()) {
      const std::uint8_t code = bytes_[at];
      if (code > kChangeColcon && code != kEndOfCommands) return UnknownCommand(sequence, at);
      const std::size_t argumentsAt = at + 1;
      if (argumentsAt + ArgumentsSize(code) > bytes_.size()) break;
      sequence.commands.push_back({code, static_cast<std::uint16_t>(at), 0, {}});
      at = argumentsAt + ArgumentsSize(code);
      ReadArguments(sequence.commands.back(), argumentsAt);
      if (code == kChangeColcon) at = ReadColcon(argumentsAt);
      if (code == kEndOfCommands) break;
    }
    read_ += at - offset;
    return Result::kDone;
  }

  static std::size_t ArgumentsSize(std::uint8_t code) {
    switch (code) {
      case kSetColour:
      case kSetContrast:
        return kPixelTypeValuesSize;
      case kSetDisplayArea:
        return kDisplayAreaSize;
      case kSetFieldOffsets:
        return kFieldOffsetsSize;
      case kChangeColcon:
        return kColconHeaderSize;
      default:
        return 0;
    }
  }

  void ReadArguments(SpuCommand& command, std::size_t at) {
    const bool first = state_.sequences.size() == 1;
    if (command.code == kSetColour || command.code == kSetContrast) {
      command.arguments = UnpackPixelTypeValues(GetShort(bytes_, at));
      command.argumentCount = 4;
    } else if (command.code == kSetDisplayArea) {
      const DisplayArea area = ReadDisplayArea(bytes_, at);
      command.arguments = {area.ey, area.sy, area.ex, area.sx};
      command.argumentCount = 4;
      if (first) SetArea(state_, area, context_.standard);
    } else if (command.code == kSetFieldOffsets) {
      command.arguments = {GetShort(bytes_, at), GetShort(bytes_, at + 2), 0, 0};
      command.argumentCount = 2;
      if (!first) return;
      state_.topOffset = command.arguments[0];
      state_.bottomOffset = command.arguments[1];
    }
  }

  // Returns the offset after the area.
  std::size_t ReadColcon(std::size_t at) {
    ColconTable table;
    table.sequence = static_cast<std::uint16_t>(state_.sequences.size() - 1);
    at += kColconHeaderSize;
    while (table.bands.size() < kMaxColconBands && !AtColconEnd(at) &&
           at + kBandHeaderSize <= bytes_.size()) {
      at = ReadBand(at, table.bands.emplace_back());
    }
    if (AtColconEnd(at)) at += kColconEndSize;
    context_.reporter.LogLine(
        Format("Found CHG_COLCON, %d bands defined", static_cast<int>(table.bands.size())));
    state_.colconTables.push_back(std::move(table));
    return at;
  }

  [[nodiscard]] bool AtColconEnd(std::size_t at) const { return GetInt(bytes_, at) == kColconEnd; }

  std::size_t ReadBand(std::size_t at, ColconBand& band) {
    const unsigned countAndBottom = GetShort(bytes_, at + kBandBottomOffset);
    band.offset = static_cast<std::uint16_t>(at);
    band.topLine = GetShort(bytes_, at + kBandTopOffset);
    band.bottomLine = countAndBottom & 0xFFFU;
    at += kBandHeaderSize;
    for (unsigned left = countAndBottom >> 12U; left > 0; --left, at += kColumnSize) {
      if (at + kColumnSize > bytes_.size()) return bytes_.size();
      if (band.columns.size() == kMaxColconColumns) continue;
      ColconColumn& column = band.columns.emplace_back();
      column.offset = static_cast<std::uint16_t>(at);
      column.startColumn = GetShort(bytes_, at + kColumnStartOffset);
      column.colours = UnpackPixelTypeValues(GetShort(bytes_, at + kColumnColoursOffset));
      column.alphas = UnpackPixelTypeValues(GetShort(bytes_, at + kColumnAlphasOffset));
    }
    return at;
  }

  Result BadOffset(std::size_t offset) {
    const int lba = static_cast<int>(unit_.Lba());
    context_.reporter.LogLine(Format("Error in Parse Command at LBA %d: Offset to DCSQT %d", lba,
                                     static_cast<int>(offset)));
    context_.limit.Report(Format(
        "Serious error while parsing commands at LBA %d\nSomething is wrong with this SPU", lba));
    return Result::kFailed;
  }

  Result UnknownCommand(ControlSequence& sequence, std::size_t at) {
    const std::uint8_t code = bytes_[at];
    sequence.commands.push_back({code, static_cast<std::uint16_t>(at), 0, {}});
    sequence.nextOffset = sequence.ownOffset;
    context_.limit.Report(Format(
        "Inconsistent data in subpic %d at LBA %d. Unknown command %d\nIgnoring this subpic.",
        unit_.number, static_cast<int>(unit_.Lba()), code));
    return Result::kFailed;
  }

  SubpictureUnit& unit_;
  SpuState& state_;
  const ByteSpan bytes_;
  const SpuContext& context_;
  std::size_t read_ = 0;  // bytes of all sequences so far
};

}  // namespace

Result ParseControlSequences(SubpictureUnit& unit, int index, std::uint16_t offset,
                             const SpuContext& context) {
  if (!unit.complete) return Result::kFailed;
  SpuState& state = unit.state;
  if (index == 0) {
    state.sequences.clear();
    state.colconTables.clear();
    state.dcsqtOffset = GetShort(state.bytes, kSpuDcsqtOffset);
    // One that is known to lie outside is reported as it is.
    if (offset < state.bytes.size()) offset = state.dcsqtOffset;
  }
  return ChainParser(unit, context).ParseChain(offset);
}

}  // namespace quillomar
