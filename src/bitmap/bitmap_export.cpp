#include "bitmap/bitmap_export.h"

#include <algorithm>

#include "bitmap/bmp.h"
#include "bitmap/shown_bitmap.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// A file that could not be written whole is not left behind.
Result WriteFile(FileSystem& files, const std::string& path, ByteSpan content) {
  const std::unique_ptr<File> file = files.Open(path, OpenMode::kCreate);
  if (!file) return Result::kFailed;
  if (!Failed(file->WriteAt(0, content))) return Result::kDone;
  static_cast<void>(files.Remove(path));
  return Result::kFailed;
}

// A frame of background with the bitmap in its place, cut at the frame's edges.
Bytes DrawOnFrame(const ShownBitmap& bitmap, int background, int frameHeight) {
  constexpr std::ptrdiff_t kWidth = kPictureWidth;
  Bytes frame(static_cast<std::size_t>(kWidth * frameHeight),
              static_cast<std::uint8_t>(background));
  const int columns = std::clamp(kPictureWidth - bitmap.x, 0, bitmap.width);
  const int rows = std::clamp(frameHeight - bitmap.y, 0, bitmap.height);
  for (std::ptrdiff_t row = 0; row < rows; ++row) {
    std::copy_n(bitmap.pixels.begin() + row * bitmap.width, columns,
                frame.begin() + (bitmap.y + row) * kWidth + bitmap.x);
  }
  return frame;
}

}  // namespace

Result ExportBmp(SubpictureUnit& unit, const std::string& path, BmpDepth depth,
                 const TypeColours& colours, FileSystem& files, const SpuContext& context) {
  if (Failed(NeedBitmap(unit, context))) return Result::kFailed;
  Bytes frame = DrawOnFrame(FindShownBitmap(unit), unit.state.statistics.backgroundType,
                            FrameHeight(context.standard));
  // Types of equal colours are one in the file.
  for (std::uint8_t& pixel : frame) pixel = NearestType(colours, colours.at(pixel));
  BmpPalette palette{};
  std::copy(colours.begin(), colours.end(), palette.begin());
  return WriteFile(files, path, MakeBmp(frame, kPictureWidth, static_cast<int>(depth), palette));
}

Result ExportPpm(SubpictureUnit& unit, const std::string& path, PpmScale scale,
                 const TypeColours& colours, FileSystem& files, const SpuContext& context) {
  if (Failed(NeedBitmap(unit, context))) return Result::kFailed;
  const ShownBitmap bitmap = FindShownBitmap(unit);
  const auto file = MakePpm(bitmap.pixels, bitmap.width, colours, scale);
  return file ? WriteFile(files, path, *file) : Result::kFailed;
}

}  // namespace quillomar
