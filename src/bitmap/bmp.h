#pragma once

#include <array>

#include "base/file.h"
#include "dvd/clut.h"

// Windows bitmap, version 3; all numbers little-endian.
//
//    0  "BM"                          14  u32  size of what follows to the palette: 40
//    2  u32  file size                18  i32  width
//    6  u16  0, u16  0                22  i32  height, negative for rows from top to bottom
//   10  u32  offset of the rows       26  u16  planes: 1
//                                     28  u16  bits per pixel
//                                     30  u32  compression: 0 for none
//                                     34  u32  size of the rows
//                                     38  u32  pixels per metre across, u32 down
//                                     46  u32  palette entries, u32 of which matter
//   54  palette of 4-bit bitmaps: blue, green, red, 0
//   ..  rows, the bottom one first, each filled up to a multiple of 4 bytes. 24 bits: blue, green,
//       red. 4 bits: palette indices, the left pixel in the high nibble
namespace quillomar {

inline constexpr std::size_t kBmpFileSizeOffset = 2;
inline constexpr std::size_t kBmpRowsOffset = 10;
inline constexpr std::size_t kBmpInfoSizeOffset = 14;
inline constexpr std::size_t kBmpWidthOffset = 18;
inline constexpr std::size_t kBmpHeightOffset = 22;
inline constexpr std::size_t kBmpPlanesOffset = 26;
inline constexpr std::size_t kBmpBitsOffset = 28;
inline constexpr std::size_t kBmpCompressionOffset = 30;
inline constexpr std::size_t kBmpRowsSizeOffset = 34;
inline constexpr std::size_t kBmpColoursUsedOffset = 46;
inline constexpr std::size_t kBmpColoursImportantOffset = 50;
inline constexpr std::size_t kBmpHeadersSize = 54;
inline constexpr std::uint32_t kBmpInfoSize = 40;
inline constexpr std::size_t kBmpPaletteEntrySize = 4;

inline constexpr int kBmpPaletteSize = 16;
using BmpPalette = std::array<Rgb, kBmpPaletteSize>;

// A file of `bits` (24 or 4) per pixel. `pixels` are palette indices, rows of `width` from the top.
[[nodiscard]] Bytes MakeBmp(ByteSpan pixels, int width, int bits, const BmpPalette& palette);

// A file of 24 bits per pixel; `rgb` holds 3 bytes a pixel, rows of `width` pixels from the top.
[[nodiscard]] Bytes MakeRgbBmp(ByteSpan rgb, int width);

// A bitmap file whose headers have been checked. Looks into the file's bytes.
class BmpView {
 public:
  // Takes an uncompressed file of 24 or 4 bits and exactly this size. Returns what is wrong with
  // another, nullptr when nothing is.
  [[nodiscard]] const char* Open(ByteSpan file, int width, int height);

  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }
  // Row 0 is on top. A palette entry that the file leaves out is black.
  [[nodiscard]] Rgb Colour(int row, int column) const;

 private:
  void ReadPalette(ByteSpan file, std::size_t rowsOffset);

  int width_ = 0;
  int height_ = 0;
  int bits_ = 0;
  BmpPalette palette_{};
  ByteSpan rows_;  // all of them, the bottom one first
};

}  // namespace quillomar
