#include "bitmap/bitmap_import.h"

#include <algorithm>
#include <optional>

#include "base/format.h"
#include "bitmap/bmp.h"
#include "spu/edit_attempt.h"
#include "spu/rooms.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// Many times a frame of 24 bits; the headers of a larger file may still be told about.
constexpr std::uint64_t kMostRead = std::uint64_t{16} << 20U;
// Spare room that an import leaves of what it finds.
constexpr int kKeptSpareRoom = 5;
// What is imported has been cut to its box already.
constexpr CropMargins kWholeBitmap{kPictureWidth, kPictureWidth};

std::optional<Bytes> ReadStart(FileSystem& files, const std::string& path) {
  const std::unique_ptr<File> file = files.Open(path, OpenMode::kReadOnly);
  if (!file) return std::nullopt;
  Bytes content(std::min(file->Size(), kMostRead));
  const auto count = file->ReadAt(0, content);
  if (!count) return std::nullopt;
  content.resize(*count);
  return content;
}

Bytes MapPixels(const BmpView& bitmap, const TypeColours& colours) {
  Bytes types;
  types.reserve(static_cast<std::size_t>(bitmap.Width()) *
                static_cast<std::size_t>(bitmap.Height()));
  Rgb last;
  std::uint8_t type = NearestType(colours, last);
  for (int row = 0; row < bitmap.Height(); ++row) {
    for (int column = 0; column < bitmap.Width(); ++column) {
      const Rgb colour = bitmap.Colour(row, column);
      if (colour != last) type = NearestType(colours, colour);
      last = colour;
      types.push_back(type);
    }
  }
  return types;
}

std::uint8_t TypeAt(const Bytes& frame, int row, int column) {
  constexpr auto kRowSize = static_cast<std::size_t>(kPictureWidth);
  return frame[static_cast<std::size_t>(row) * kRowSize + static_cast<std::size_t>(column)];
}

// The part of the frame that becomes the bitmap.
ContentBox FindBox(const SpuState& state, const Bytes& frame) {
  const int background = state.statistics.backgroundType;
  ContentBox box = FindContent(frame, kPictureWidth, background);
  const bool otherField = (box.top - state.areaAsFound.sy) % 2 != 0;
  if (otherField && box.top > 0) --box.top;
  const auto tellsBackground = [&] {
    return BackgroundTypeOf(state, TypeAt(frame, box.top, box.left)) == background;
  };
  if (!tellsBackground() && box.left > 0) --box.left;
  if (!tellsBackground() && box.top > 1) box.top = static_cast<std::int16_t>(box.top - 2);
  // Some readers take one row alone for no bitmap.
  const int lastRow = static_cast<int>(frame.size()) / kPictureWidth - 1;
  if (box.top == box.bottom && box.bottom < lastRow) ++box.bottom;
  if (box.top == box.bottom) box.top = static_cast<std::int16_t>(box.top - 2);
  return box;
}

void PutBitmap(SubpictureUnit& unit, const Bytes& frame, const ContentBox& box) {
  SpuState& state = unit.state;
  const auto edge = [](int value) { return static_cast<std::uint16_t>(value); };
  state.areaAsFound = {edge(box.left), edge(box.right), edge(box.top), edge(box.bottom)};
  state.area = state.areaAsFound;
  state.width = state.area.Columns();
  state.height = state.area.Lines();
  state.horizontalOffset = state.verticalOffset = state.hiddenRows = state.border = 0;
  state.bandsAsFound.clear();
  unit.pixels.clear();
  for (std::ptrdiff_t row = box.top; row <= box.bottom; ++row) {
    const auto start = frame.begin() + row * kPictureWidth;
    unit.pixels.insert(unit.pixels.end(), start + box.left, start + box.right + 1);
  }
}

// Where the control sequences stand once spare room beyond the kept one and unused bytes in front
// of the bitmap are taken away.
int ClosedUpOffset(const SpuState& state) {
  const auto& starts = state.statistics.lineStarts;
  const int leading =
      std::max(std::min(starts[0], starts[1]) - static_cast<int>(kSpuHeaderSize), 0);
  return state.dcsqtOffset - leading - std::max(state.spareRoom - kKeptSpareRoom, 0);
}

Result ReplaceBitmap(SubpictureUnit& unit, const Bytes& frame, const SpuContext& context) {
  SpuState& state = unit.state;
  const int wanted = ClosedUpOffset(state);
  PutBitmap(unit, frame, FindBox(state, frame));
  if (Failed(ReencodeBitmap(unit, kWholeBitmap, context))) return Result::kFailed;
  const int surplus = std::min(state.dcsqtOffset - wanted, state.spareRoom);
  return surplus > 0 ? ShiftControlSequences(unit, -surplus) : Result::kDone;
}

}  // namespace

Result ImportBmp(SubpictureUnit& unit, const std::string& path, const TypeColours& colours,
                 FileSystem& files, const SpuContext& context) {
  if (Failed(NeedBitmap(unit, context))) return Result::kFailed;
  const auto file = ReadStart(files, path);
  if (!file) {
    context.reporter.ReportError(Format("Error opening %s", path.c_str()));
    return Result::kFailed;
  }
  BmpView bitmap;
  if (const char* fault = bitmap.Open(*file, kPictureWidth, FrameHeight(context.standard))) {
    context.reporter.ReportError(fault);
    return Result::kFailed;
  }
  const Bytes frame = MapPixels(bitmap, colours);
  const auto before = unit.pixels;
  if (Failed(AttemptEdit(unit, [&] { return ReplaceBitmap(unit, frame, context); }))) {
    unit.pixels = before;
    context.reporter.ReportError(
        "Ooops! The modified encoded subpic does not fit in the available space on the DVD!");
    return Result::kFailed;
  }
  return Result::kDone;
}

}  // namespace quillomar
