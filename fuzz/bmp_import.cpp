// Bitmap files: whatever stands in one, reading it is safe; an import is all or nothing, and what a
// reader of the unit's bytes alone finds afterwards is what the import says.
#include "bitmap/bitmap_import.h"
#include "bitmap/bmp.h"
#include "fuzz_target.h"
#include "spu/parse.h"
#include "spu/run_length.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr const char* kPath = "/b.bmp";
constexpr TypeColours kColours = {Rgb{0, 0, 0}, Rgb{255, 255, 255}, Rgb{80, 80, 80}, Rgb{9, 9, 9}};
constexpr int kWidth = 24;
constexpr int kHeight = 8;
constexpr std::size_t kSeedPixels = 16;
constexpr std::size_t kPaletteSize = 64;

void CheckView(ByteSpan input) {
  BmpView view;
  if (view.Open(input, kWidth, kHeight) != nullptr) return;
  for (int row = 0; row < kHeight; ++row) {
    for (int column = 0; column < kWidth; ++column) {
      Require(NearestType(kColours, view.Colour(row, column)) < kPixelTypes);
    }
  }
}

// A file of few bytes stands for one of a whole frame that repeats them.
Bytes Spread(ByteSpan input) {
  Bytes file(input.begin(), input.end());
  if (input.size() <= kBmpHeadersSize) return file;
  const std::size_t size = kBmpHeadersSize + std::size_t{3} * kPictureWidth * 480;
  const ByteSpan repeated = input.subspan(kBmpHeadersSize);
  file.reserve(size + repeated.size());
  while (file.size() < size) file.insert(file.end(), repeated.begin(), repeated.end());
  return file;
}

// Two rows of two pixels at the first line, shown at once.
SubpictureUnit MakeUnit(const SpuContext& context) {
  SubpictureUnit unit;
  unit.state.bytes = {0,    33,   0,    8,                    // header
                      0x44, 0x45, 0x46, 0x47,                 // one byte a row
                      0,    0,    0,    8,    1,              // the only sequence
                      3,    0x32, 0x10, 4,    0xFF, 0xF0,     // colours and contrast
                      5,    0,    0,    1,    0,    0,    3,  // area
                      6,    0,    4,    0,    6,    0xFF, 0, 0};
  unit.state.freeRoom = 20000;
  unit.complete = true;
  Require(!Failed(ParseControlSequences(unit, 0, 0, context)));
  Require(!Failed(DecodeBitmap(unit, context)));
  return unit;
}

void CheckImport(const Bytes& file) {
  test::MemoryFileSystem files;
  files.Put(kPath, file);
  Reporter reporter(files);
  ReportLimit limit(reporter);
  const SpuContext context{reporter, limit, VideoStandard::kNtsc};
  SubpictureUnit unit = MakeUnit(context);
  const SubpictureUnit before = unit;
  if (Failed(ImportBmp(unit, kPath, kColours, files, context))) {
    Require(unit.state == before.state && unit.pixels == before.pixels);
    return;
  }
  Require(unit.state.freeRoom >= 0 && unit.state.spareRoom >= 0);
  Require(unit.state.freeRoom + unit.state.TotalSize() ==
          before.state.freeRoom + before.state.TotalSize());
  SubpictureUnit reader;
  reader.state.bytes = unit.state.bytes;
  reader.complete = true;
  Require(!Failed(ParseControlSequences(reader, 0, 0, context)));
  Require(!Failed(DecodeBitmap(reader, context)));
  Require(reader.pixels == unit.pixels && reader.state.area == unit.state.area);
  Require(reader.state.sequences == unit.state.sequences);
}

// The front of a bitmap with a few runs in it.
Bytes Seed(int width, int height, int bits) {
  BmpPalette palette{};
  std::copy(kColours.begin(), kColours.end(), palette.begin());
  Bytes pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const std::size_t last = pixels.size() - 1;
  for (std::size_t i = 0; i < kSeedPixels; ++i) {
    pixels[last - i] = static_cast<std::uint8_t>(i / 4 % 4);
  }
  Bytes file = MakeBmp(pixels, width, bits, palette);
  // A frame takes long: few bytes of it are enough.
  if (width == kPictureWidth) {
    file.resize(kBmpHeadersSize + (bits == 4 ? kPaletteSize + kSeedPixels : 3 * kSeedPixels));
  }
  return file;
}

}  // namespace

std::vector<Bytes> Seeds() {
  return {Seed(kWidth, kHeight, 4), Seed(kPictureWidth, 480, 24), Seed(kPictureWidth, 480, 4)};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillomar::fuzz::CheckView({data, size});
  quillomar::fuzz::CheckImport(quillomar::fuzz::Spread({data, size}));
  return 0;
}
