#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "dvd/nav_pack.h"
#include "dvd/sector.h"
#include "spu/char_box.h"
#include "spu/control_sequence.h"

// A subpicture unit (SPU): a run-length coded bitmap of four pixel types and the control sequences
// that show it.
//
//   0  u16  total size in bytes
//   2  u16  offset of the first control sequence
//   4  ...  run-length data of both fields
namespace quillomar {

inline constexpr std::size_t kSpuHeaderSize = 4;
inline constexpr std::size_t kSpuSizeOffset = 0;
inline constexpr std::size_t kSpuDcsqtOffset = 2;
inline constexpr int kMaxSpuSize = 65535;
inline constexpr int kMaxSpuPacks = 32;

enum PixelType : std::uint8_t { kBackground = 0, kPattern = 1, kEmphasis1 = 2, kEmphasis2 = 3 };

// Pixels and lines of the frame, both ends included.
struct DisplayArea {
  std::uint16_t sx = 0, ex = 0, sy = 0, ey = 0;
  // Pixels in a row and rows of the bitmap; 0 for an area that ends before it starts.
  [[nodiscard]] int Columns() const { return ex < sx ? 0 : ex - sx + 1; }
  [[nodiscard]] int Lines() const { return ey < sy ? 0 : ey - sy + 1; }
  // Rows above the end of a frame of that many lines.
  [[nodiscard]] int LinesInFrame(int frameHeight) const {
    return std::clamp(frameHeight - sy, 0, Lines());
  }
  friend bool operator==(const DisplayArea&, const DisplayArea&) = default;
};

// A rectangle of the bitmap, all edges included; -1 is unset.
struct ContentBox {
  std::int16_t left = kUnsetLeft, top = -1, right = -1, bottom = -1;
  static constexpr std::int16_t kUnsetLeft = 720;
  // Widens the box to hold columns `first` to `last` of a row.
  void Add(int row, int first, int last);
  // What stands for the content where there is none: a corner of the bitmap.
  [[nodiscard]] static ContentBox OfEmptyBitmap(int width, int rows);
  friend bool operator==(const ContentBox&, const ContentBox&) = default;
};

inline constexpr std::size_t kLineTableSize = 600;

// What the first decode found out about the bitmap.
struct BitmapStatistics {
  // Type of the first pixel or, where that is opaque, the only transparent one; -1 until decoded.
  int backgroundType = -1;
  std::array<std::uint32_t, kPixelTypes> pixelCounts{};
  ContentBox box;  // of the pixels that are not background; stands in for a small corner if none
  bool empty = false;  // no such pixel
  // Byte offset from the unit's start at which each row's codes begin; the two entries after the
  // last row hold the ends of the fields.
  std::array<std::uint16_t, kLineTableSize> lineStarts{};
  // First byte after all rows of the top and of the bottom field, those below the frame included.
  std::array<int, 2> fieldEnds{};
  friend bool operator==(const BitmapStatistics&, const BitmapStatistics&) = default;
};

// Lines and columns of a change-colour band.
struct BandPlace {
  std::uint16_t topLine = 0;
  std::uint16_t bottomLine = 0;
  std::vector<std::uint16_t> startColumns;
  friend bool operator==(const BandPlace&, const BandPlace&) = default;
};

// Everything of a unit that an edit can change, as one value: a copy restores it.
struct SpuState {
  Bytes bytes;                     // the unit; its size is the total size
  std::uint16_t dcsqtOffset = 0;   // offset of the first control sequence
  std::uint32_t pts = 0;           // 90 kHz, as it now stands
  DisplayArea area;                // of the first control sequence, as last parsed
  DisplayArea areaAsFound;         // kept by re-parses once decoded
  std::uint16_t topOffset = 0;     // run-length data of the even rows
  std::uint16_t bottomOffset = 0;  // and of the odd rows
  int width = 0;                   // pixels; 0 when the area ends before it starts
  int alignedWidth = 0;            // rounded up to a multiple of 4
  int height = 0;                  // lines, cut at the frame's end; likewise
  std::vector<ControlSequence> sequences;
  std::vector<ColconTable> colconTables;
  int freeRoom = 0;   // bytes by which the unit may grow inside its packs
  int spareRoom = 0;  // unused bytes between the bitmap and the control sequences
  BitmapStatistics statistics;
  int horizontalOffset = 0;  // pixels right of the area as found
  int verticalOffset = 0;    // lines above the area as found
  int hiddenRows = 0;        // of the bitmap, above the area: cut off by the vertical move
  int border = 0;            // lines
  std::vector<BandPlace> bandsAsFound;  // of all tables, while the unit is moved
  bool decoded = false;
  bool modified = false;
  friend bool operator==(const SpuState&, const SpuState&) = default;

  [[nodiscard]] int TotalSize() const { return static_cast<int>(bytes.size()); }
};

// One of the packs that hold the unit.
struct SpuPack {
  int fileIndex = 0;  // in the file set
  std::uint32_t lbaInFile = 0;
  std::uint32_t lba = 0;  // LBA in set
  // PayloadSum as it was read; nothing when it is not known.
  std::optional<std::uint64_t> payloadSum = {};
  friend bool operator==(const SpuPack&, const SpuPack&) = default;
};

inline constexpr std::size_t kFirstHeaderSize = 64;

// One subtitle held for editing.
struct SubpictureUnit {
  SpuState state;

  // Where it comes from; edits leave this alone.
  std::vector<SpuPack> packs;                                // in stream order, at most 32
  std::array<std::uint8_t, kFirstHeaderSize> firstHeader{};  // start of the first pack as found
  std::uint32_t ptsAsRead = 0;                               // 90 kHz
  std::int64_t globalTime = 0;  // ticks from the start of the set; follows state.pts
  std::uint32_t navLba = 0;     // LBA in set of its VOBU's nav pack
  Vcid vcid;
  int stream = 0;                 // 0 to 31
  int number = 0;                 // in the set, from 1
  int numberInStream = 0;         // from 1
  std::optional<int> clut;        // index into the cell map's CLUTs
  Highlight highlight;            // buttons of a menu; empty without them
  std::int64_t supPosition = -1;  // byte position of its record in a .sup file
  bool complete = false;          // all bytes gathered
  bool scrambled = false;         // some pack is scrambled; never written

  // The text as it was read from the bitmap.
  std::vector<std::string> ocrText;       // lines, UTF-8
  std::vector<std::string> savedOcrText;  // as first read, before anything was erased
  std::vector<CharBox> charBoxes;
  // Boxes held; 0: never read, negative: the bitmap has changed since.
  int charBoxCount = 0;
  TextRoles textRoles;

  // The bitmap: one byte for each pixel, rows of state.width bytes, row 0 on top; always the rows
  // of the area as found. Empty until decoded and after ReleasePixels.
  std::vector<std::uint8_t> pixels;

  // The sequence shown and edited, and what it shows: its own colours and alphas, else those of
  // sequence 0; nothing where neither has any.
  int currentSequence = 0;
  bool allSequences = true;  // edits go to every sequence
  std::optional<PixelTypeValues> currentColours;
  std::optional<PixelTypeValues> currentAlphas;

  // LBA in set of the first pack, 0 for a unit without packs.
  [[nodiscard]] std::uint32_t Lba() const { return packs.empty() ? 0 : packs.front().lba; }
  [[nodiscard]] std::uint8_t SubStreamId() const;
  [[nodiscard]] bool HasButtons() const { return !highlight.buttons.empty(); }
  void MarkBoxesStale() { charBoxCount = -std::abs(charBoxCount); }
  void ReleasePixels() { std::vector<std::uint8_t>().swap(pixels); }
};

}  // namespace quillomar
