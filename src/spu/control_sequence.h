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
inline constexpr int kTicksPerMs = 90;
inline constexpr int kMaxDelay = 65535;

// A delay in ms, truncated and not rounded to frames.
[[nodiscard]] constexpr int RawDelayMs(std::uint16_t delay) {
  return delay * kDelayUnitTicks / kTicksPerMs;
}

enum SpuCommandCode : std::uint8_t {
  kForcedStart = 0x00,
  kStart = 0x01,
  kStop = 0x02,
  kSetColour = 0x03,        // 2 bytes: four CLUT indices, packed as below
  kSetContrast = 0x04,      // 2 bytes: four alphas, packed as below
  kSetDisplayArea = 0x05,   // 6 bytes: four 12-bit values sx, ex, sy, ey
  kSetFieldOffsets = 0x06,  // 4 bytes: u16 top field, u16 bottom field
  kChangeColcon = 0x07,     // variable
  kEndOfCommands = 0xFF,
};

// Argument bytes after the code byte.
inline constexpr std::size_t kPixelTypeValuesSize = 2;
inline constexpr std::size_t kDisplayAreaSize = 6;
inline constexpr std::size_t kFieldOffsetsSize = 4;

inline constexpr int kPixelTypes = 4;
// Four values in the order of the pixel types: background, pattern, emphasis 1, emphasis 2.
using PixelTypeValues = std::array<std::uint16_t, kPixelTypes>;

// Colours and alphas stand as four nibbles of one word, emphasis 2 in the highest.
[[nodiscard]] constexpr PixelTypeValues UnpackPixelTypeValues(std::uint16_t word) {
  PixelTypeValues values{};
  for (auto& value : values) {
    value = word & 0xFU;
    word = static_cast<std::uint16_t>(word >> 4U);
  }
  return values;
}
// Keeps the low nibble of each value.
[[nodiscard]] constexpr std::uint16_t PackPixelTypeValues(const PixelTypeValues& values) {
  return static_cast<std::uint16_t>((values[3] & 0xFU) << 12U | (values[2] & 0xFU) << 8U |
                                    (values[1] & 0xFU) << 4U | (values[0] & 0xFU));
}

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

// CHG_COLCON: colours and alphas that change by bands of lines and, inside a band, by columns.
//
//   0  u16  size of this area
//   2  ...  bands, ended by the four bytes 0x0FFFFFFF
//
// A band: u16 top line; u16 number of columns (high nibble) and bottom line (12 bits); its columns.
// A column: u16 start column, u16 colours, u16 alphas.
inline constexpr std::size_t kColconHeaderSize = 2;
inline constexpr std::uint32_t kColconEnd = 0x0FFFFFFF;
inline constexpr std::size_t kColconEndSize = 4;
inline constexpr std::size_t kBandTopOffset = 0;
inline constexpr std::size_t kBandBottomOffset = 2;
inline constexpr std::size_t kBandHeaderSize = 4;
inline constexpr std::size_t kColumnStartOffset = 0;
inline constexpr std::size_t kColumnColoursOffset = 2;
inline constexpr std::size_t kColumnAlphasOffset = 4;
inline constexpr std::size_t kColumnSize = 6;
inline constexpr std::size_t kMaxColconBands = 64;
inline constexpr std::size_t kMaxColconColumns = 8;

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
