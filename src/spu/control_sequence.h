#pragma once

#include <array>
#include <cstdint>
#include <vector>

// Display control sequences (DCSQT entries) of a subpicture unit.
//
//   0  u16  delay after the unit's PTS, in 1024/90000 s
//   2  u16  offset of the next sequence from the unit's start; its own offset in the last one
//   4  ...  commands: one code byte and its arguments, until 0xFF
namespace quillomar {

inline constexpr std::size_t kSequenceDelayOffset = 0;
inline constexpr std::size_t kSequenceNextOffset = 2;
inline constexpr std::size_t kSequenceHeaderSize = 4;
// One unit of delay in ticks of 90 kHz.
inline constexpr int kDelayUnitTicks = 1024;

enum SpuCommandCode : std::uint8_t {
  kForcedStart = 0x00,
  kStart = 0x01,
  kStop = 0x02,
  kSetColour = 0x03,        // 2 bytes: four CLUT indices, as nibbles
  kSetContrast = 0x04,      // 2 bytes: four alphas, as nibbles
  kSetDisplayArea = 0x05,   // 6 bytes: four 12-bit values sx, ex, sy, ey
  kSetFieldOffsets = 0x06,  // 4 bytes: u16 top field, u16 bottom field
  kChangeColcon = 0x07,     // variable
  kEndOfCommands = 0xFF,
};

inline constexpr int kPixelTypes = 4;
// Four values in the order of the pixel types: background, pattern, emphasis 1, emphasis 2.
using PixelTypeValues = std::array<std::uint16_t, kPixelTypes>;

struct SpuCommand {
  std::uint32_t code = 0;
  std::uint16_t offset = 0;         // of the code byte from the unit's start
  std::uint16_t argumentCount = 0;  // 0, 2 or 4
  // Colours and alphas: by pixel type. Display area: ey, sy, ex, sx. Field offsets: top, bottom.
  std::array<std::uint16_t, 4> arguments{};
  friend bool operator==(const SpuCommand&, const SpuCommand&) = default;
};

struct ControlSequence {
  std::uint16_t delay = 0;       // units of 1024/90000 s
  std::uint16_t ownOffset = 0;   // from the unit's start
  std::uint16_t nextOffset = 0;  // as held in the bytes; own offset closes the chain
  std::vector<SpuCommand> commands;
  friend bool operator==(const ControlSequence&, const ControlSequence&) = default;
};

inline constexpr int kMaxColconBands = 64;
inline constexpr int kMaxColconColumns = 8;

struct ColconColumn {
  std::uint16_t startColumn = 0;
  PixelTypeValues colours{};
  PixelTypeValues alphas{};
  std::uint16_t offset = 0;  // of the entry from the unit's start
  friend bool operator==(const ColconColumn&, const ColconColumn&) = default;
};
struct ColconBand {
  std::uint16_t topLine = 0;
  std::uint16_t bottomLine = 0;
  std::uint16_t offset = 0;           // of the line header from the unit's start
  std::vector<ColconColumn> columns;  // at most 8; further ones are read and skipped
  friend bool operator==(const ColconBand&, const ColconBand&) = default;
};
struct ColconTable {
  std::uint16_t sequence = 0;  // index of the control sequence that carries the command
  std::vector<ColconBand> bands;
  friend bool operator==(const ColconTable&, const ColconTable&) = default;
};

}  // namespace quillomar
