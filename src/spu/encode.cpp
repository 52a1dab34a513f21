#include <algorithm>

#include "spu/place.h"
#include "spu/position.h"
#include "spu/rooms.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// Runs that end the row are written as such from this length on.
constexpr int kRowEndLength = 64;
constexpr int kLongestRun = 255;

class NibbleWriter {
 public:
  explicit NibbleWriter(Bytes& out) : out_(out) {}

  void WriteRun(int length, std::uint8_t type) {
    const unsigned value = static_cast<unsigned>(length) * 4 + type;
    // Every nibble but the last that the value leaves free is one less to write; length 0 takes
    // them all.
    int nibbles = 4;
    if (length > 0 && value < 0x100) nibbles = value < 0x10 ? 1 : value < 0x40 ? 2 : 3;
    for (int shift = (nibbles - 1) * 4; shift >= 0; shift -= 4) Put(value >> shift & 0xFU);
  }

  void EndRow() {
    if (half_) Put(0);
  }

 private:
  void Put(unsigned nibble) {
    if (half_) {
      out_.back() = static_cast<std::uint8_t>(out_.back() | nibble);
    } else {
      out_.push_back(static_cast<std::uint8_t>(nibble << 4U));
    }
    half_ = !half_;
  }

  Bytes& out_;
  bool half_ = false;  // the last byte's low nibble is free
};

void EncodeRow(const std::uint8_t* pixel, const std::uint8_t* end, NibbleWriter& writer) {
  while (pixel != end) {
    const std::uint8_t type = *pixel;
    const std::uint8_t* next =
        std::find_if(pixel, end, [type](std::uint8_t each) { return each != type; });
    const int length = static_cast<int>(next - pixel);
    if (next == end) {
      writer.WriteRun(length < kRowEndLength ? length : 0, type);
      break;
    }
    const int written = std::min(length, kLongestRun);
    writer.WriteRun(written, type);
    pixel += written;
  }
  writer.EndRow();
}

void EncodeField(const SubpictureUnit& unit, const ContentBox& crop, int firstRow, Bytes& out) {
  NibbleWriter writer(out);
  const std::ptrdiff_t width = unit.state.width;
  for (std::ptrdiff_t row = firstRow; row <= crop.bottom; row += 2) {
    const std::uint8_t* start = unit.pixels.data() + row * width;
    EncodeRow(start + crop.left, start + crop.right + 1, writer);
  }
}

int BitmapRows(const SubpictureUnit& unit) {
  const int width = unit.state.width;
  return width == 0 ? 0 : static_cast<int>(unit.pixels.size()) / width;
}

ContentBox Widen(const ContentBox& content, CropMargins margins, int width, int rows) {
  // The first row stays even, so that every line stays in its field; one line more at the bottom
  // gives the last line its neighbour in the other field.
  const int above = std::clamp(margins.y, 0, rows);
  const int beside = std::clamp(margins.x, 0, width);
  const int top = std::max(content.top - above, 0) / 2 * 2;
  const int bottom = std::min(content.bottom + above + 1, rows - 1);
  const int left = std::max(content.left - beside, 0);
  const int right = std::min(content.right + beside, width - 1);
  return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
          static_cast<std::int16_t>(right), static_cast<std::int16_t>(bottom)};
}

DisplayArea CropArea(const DisplayArea& area, const ContentBox& crop) {
  const auto sum = [](int a, int b) { return static_cast<std::uint16_t>(a + b); };
  return {sum(area.sx, crop.left), sum(area.sx, crop.right), sum(area.sy, crop.top),
          sum(area.sy, crop.bottom)};
}

// Puts codes, display area and field offsets into the unit's bytes and reads them again; fails,
// possibly half-way, when there is no room for them or no command that names them. Codes of another
// bitmap would be written over.
Result Replace(SubpictureUnit& unit, const EncodedBitmap& encoded, const DisplayArea& area,
               const SpuContext& context) {
  SpuState& state = unit.state;
  if (HasOtherBitmap(state)) return Result::kFailed;
  const int missing = encoded.End() - state.dcsqtOffset;
  if (missing > 0 && Failed(ShiftControlSequences(unit, missing))) return Result::kFailed;
  const auto first = state.bytes.begin() + kSpuHeaderSize;
  const auto afterCodes = std::copy(encoded.codes.begin(), encoded.codes.end(), first);
  std::fill(afterCodes, state.bytes.begin() + state.dcsqtOffset, std::uint8_t{0});
  state.decoded = false;
  const auto bottomOffset = static_cast<std::uint16_t>(encoded.bottomOffset);
  if (Failed(PutPlace(unit, {area, kSpuHeaderSize, bottomOffset}, context))) return Result::kFailed;
  return DecodeBitmap(unit, context);
}

// The bands are still where the move has put them; their places as found are known.
Result MoveAgain(SubpictureUnit& unit, const std::vector<BandPlace>& bands,
                 const SpuContext& context) {
  SpuState& state = unit.state;
  const int v = state.verticalOffset;
  state.hiddenRows = 0;
  MoveBands(state, bands);
  if (Failed(MoveHorizontal(unit, state.horizontalOffset, context))) return Result::kFailed;
  // An even offset stays even when the new content has other limits.
  return MoveVertical(unit, v, v % 2 == 0, context);
}

}  // namespace

ContentBox FindContent(ByteSpan pixels, int width, int background) {
  const int rows = width == 0 ? 0 : static_cast<int>(pixels.size()) / width;
  ContentBox box;
  const auto isContent = [background](std::uint8_t type) { return type != background; };
  for (int row = 0; row < rows; ++row) {
    const auto begin = pixels.begin() + static_cast<std::ptrdiff_t>(row) * width;
    const auto first = std::find_if(begin, begin + width, isContent);
    if (first == begin + width) continue;
    const auto last = std::find_if(std::make_reverse_iterator(begin + width),
                                   std::make_reverse_iterator(begin), isContent);
    box.Add(row, static_cast<int>(first - begin), static_cast<int>(last.base() - begin) - 1);
  }
  return box.top < 0 ? ContentBox::OfEmptyBitmap(width, rows) : box;
}

EncodedBitmap EncodeBitmap(const SubpictureUnit& unit, const ContentBox& crop) {
  EncodedBitmap encoded;
  EncodeField(unit, crop, crop.top, encoded.codes);
  encoded.bottomOffset = static_cast<int>(kSpuHeaderSize + encoded.codes.size());
  EncodeField(unit, crop, crop.top + 1, encoded.codes);
  return encoded;
}

Result ReencodeBitmap(SubpictureUnit& unit, CropMargins margins, const SpuContext& context) {
  if (Failed(NeedBitmap(unit, context))) return Result::kFailed;
  const SpuState before = unit.state;
  const int rows = BitmapRows(unit);
  const ContentBox content =
      FindContent(unit.pixels, unit.state.width, unit.state.statistics.backgroundType);
  const ContentBox crop = Widen(content, margins, unit.state.width, rows);
  const EncodedBitmap encoded = EncodeBitmap(unit, crop);
  const DisplayArea area = CropArea(unit.state.areaAsFound, crop);
  const auto bands = FindBandsAsFound(unit.state);
  if (!Failed(Replace(unit, encoded, area, context)) && !Failed(MoveAgain(unit, bands, context))) {
    unit.state.modified = before.modified || unit.state.bytes != before.bytes;
    unit.MarkBoxesStale();
    return Result::kDone;
  }
  unit.state = before;
  unit.pixels.clear();
  // The failure is the refusal; a bitmap that could be decoded before can be decoded now.
  static_cast<void>(DecodeBitmap(unit, context));
  return Result::kFailed;
}

Result CropBackground(SubpictureUnit& unit, CropMargins margins, const SpuContext& context) {
  // The codes count, not what may have been drawn into the pixels.
  if (Failed(DecodeBitmap(unit, context))) return Result::kFailed;
  return ReencodeBitmap(unit, margins, context);
}

}  // namespace quillomar
