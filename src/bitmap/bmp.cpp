#include "bitmap/bmp.h"

#include <algorithm>

#include "dvd/big_endian.h"

namespace quillomar {
namespace {

constexpr int kTrueColour = 24;
constexpr int kIndexed = 4;
constexpr std::size_t kBytesPerColour = 3;

std::uint32_t LittleInt(ByteSpan bytes, std::size_t offset) {
  return SwapInt(GetInt(bytes, offset));
}

std::uint16_t LittleShort(ByteSpan bytes, std::size_t offset) {
  return SwapShort(GetShort(bytes, offset));
}

void PutLittleInt(Bytes& bytes, std::size_t offset, std::size_t value) {
  PutInt(bytes, offset, SwapInt(static_cast<std::uint32_t>(value)));
}

void PutLittleShort(Bytes& bytes, std::size_t offset, int value) {
  PutShort(bytes, offset, SwapShort(static_cast<std::uint16_t>(value)));
}

Rgb GetColour(ByteSpan bytes, std::size_t offset) {
  return {GetByte(bytes, offset + 2), GetByte(bytes, offset + 1), GetByte(bytes, offset)};
}

void PutColour(std::uint8_t* out, Rgb colour) {
  out[0] = colour.b;
  out[1] = colour.g;
  out[2] = colour.r;
}

std::size_t RowSize(int width, int bits) {
  return static_cast<std::size_t>(width * bits + 31) / 32 * 4;
}

void PutHeaders(Bytes& file, int width, int height, int bits, std::size_t rowsOffset) {
  file[0] = 'B';
  file[1] = 'M';
  PutLittleInt(file, kBmpFileSizeOffset, file.size());
  PutLittleInt(file, kBmpRowsOffset, rowsOffset);
  PutLittleInt(file, kBmpInfoSizeOffset, kBmpInfoSize);
  PutLittleInt(file, kBmpWidthOffset, static_cast<std::size_t>(width));
  PutLittleInt(file, kBmpHeightOffset, static_cast<std::size_t>(height));
  PutLittleShort(file, kBmpPlanesOffset, 1);
  PutLittleShort(file, kBmpBitsOffset, bits);
  PutLittleInt(file, kBmpRowsSizeOffset, file.size() - rowsOffset);
  const std::size_t colours = (rowsOffset - kBmpHeadersSize) / kBmpPaletteEntrySize;
  PutLittleInt(file, kBmpColoursUsedOffset, colours);
  PutLittleInt(file, kBmpColoursImportantOffset, colours);
}

void PutRow(ByteSpan pixels, int bits, const BmpPalette& palette, std::uint8_t* out) {
  for (std::size_t x = 0; x < pixels.size(); ++x) {
    if (bits == kTrueColour) {
      PutColour(out + x * kBytesPerColour, palette.at(pixels[x]));
    } else {
      const int shift = x % 2 == 0 ? 4 : 0;
      out[x / 2] = static_cast<std::uint8_t>(out[x / 2] | pixels[x] << shift);
    }
  }
}

}  // namespace

Bytes MakeBmp(ByteSpan pixels, int width, int bits, const BmpPalette& palette) {
  const auto columns = static_cast<std::size_t>(width);
  const std::size_t height = pixels.size() / columns;
  const std::size_t paletteSize = bits == kIndexed ? palette.size() * kBmpPaletteEntrySize : 0;
  const std::size_t rowsOffset = kBmpHeadersSize + paletteSize;
  const std::size_t rowSize = RowSize(width, bits);
  Bytes file(rowsOffset + height * rowSize);
  PutHeaders(file, width, static_cast<int>(height), bits, rowsOffset);
  for (std::size_t i = 0; i < paletteSize / kBmpPaletteEntrySize; ++i) {
    PutColour(file.data() + kBmpHeadersSize + i * kBmpPaletteEntrySize, palette.at(i));
  }
  for (std::size_t row = 0; row < height; ++row) {
    std::uint8_t* const out = file.data() + rowsOffset + (height - 1 - row) * rowSize;
    PutRow(pixels.subspan(row * columns, columns), bits, palette, out);
  }
  return file;
}

Bytes MakeRgbBmp(ByteSpan rgb, int width) {
  const std::size_t rowBytes = static_cast<std::size_t>(width) * kBytesPerColour;
  const std::size_t height = rgb.size() / rowBytes;
  const std::size_t rowSize = RowSize(width, kTrueColour);
  Bytes file(kBmpHeadersSize + height * rowSize);
  PutHeaders(file, width, static_cast<int>(height), kTrueColour, kBmpHeadersSize);
  for (std::size_t row = 0; row < height; ++row) {
    std::uint8_t* const out = file.data() + kBmpHeadersSize + (height - 1 - row) * rowSize;
    const ByteSpan source = rgb.subspan(row * rowBytes, rowBytes);
    for (std::size_t at = 0; at < rowBytes; at += kBytesPerColour) {
      PutColour(out + at, {source[at], source[at + 1], source[at + 2]});
    }
  }
  return file;
}

const char* BmpView::Open(ByteSpan file, int width, int height) {
  constexpr const char* kTooShort = "Error Couldn't read enough data from bitmap file!";
  if (file.size() < kBmpHeadersSize) return kTooShort;
  if (LittleInt(file, kBmpInfoSizeOffset) != kBmpInfoSize) {
    return "Error: The bitmap must be standard Windows V.3 bitmap - Not OS2 at the moment!";
  }
  if (LittleInt(file, kBmpWidthOffset) != static_cast<std::uint32_t>(width) ||
      LittleInt(file, kBmpHeightOffset) != static_cast<std::uint32_t>(height)) {
    return "Error: The bitmap size should match the picture size for this DVD";
  }
  bits_ = LittleShort(file, kBmpBitsOffset);
  if (LittleInt(file, kBmpCompressionOffset) != 0 || (bits_ != kTrueColour && bits_ != kIndexed)) {
    return "Error: The bitmap must be an uncompressed 24bit or 4bit RGB bitmap";
  }
  width_ = width;
  height_ = height;
  const std::size_t rowsOffset = LittleInt(file, kBmpRowsOffset);
  const std::size_t rowsSize = RowSize(width, bits_) * static_cast<std::size_t>(height);
  if (rowsOffset < kBmpHeadersSize || rowsOffset > file.size() ||
      file.size() - rowsOffset < rowsSize) {
    return kTooShort;
  }
  rows_ = file.subspan(rowsOffset, rowsSize);
  if (bits_ == kIndexed) ReadPalette(file, rowsOffset);
  return nullptr;
}

void BmpView::ReadPalette(ByteSpan file, std::size_t rowsOffset) {
  const std::size_t used = LittleInt(file, kBmpColoursUsedOffset);
  const std::size_t room = (rowsOffset - kBmpHeadersSize) / kBmpPaletteEntrySize;
  const std::size_t count = std::min({used == 0 ? palette_.size() : used, room, palette_.size()});
  palette_ = {};
  for (std::size_t i = 0; i < count; ++i) {
    palette_.at(i) = GetColour(file, kBmpHeadersSize + i * kBmpPaletteEntrySize);
  }
}

Rgb BmpView::Colour(int row, int column) const {
  const std::size_t start = RowSize(width_, bits_) * static_cast<std::size_t>(height_ - 1 - row);
  const auto x = static_cast<std::size_t>(column);
  if (bits_ == kTrueColour) return GetColour(rows_, start + x * kBytesPerColour);
  const std::uint8_t pair = GetByte(rows_, start + x / 2);
  return palette_[x % 2 == 0 ? pair >> 4U : pair & 0xFU];
}

}  // namespace quillomar
