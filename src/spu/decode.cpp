#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "dvd/big_endian.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

constexpr std::uint16_t kOpaque = 15;
constexpr int kNibblesInCode = 4;

struct Run {
  int length;  // 0: to the end of the row
  std::uint8_t type;
};

// Reads the run codes of one field.
class FieldReader {
 public:
  FieldReader(ByteSpan bytes, std::size_t offset) : bytes_(bytes), nibble_(offset * 2) {}

  Run Next() {
    const std::uint32_t window = Window();
    // Each pair of leading zeros makes the code a nibble longer, up to four.
    const int more = std::min(std::countl_zero(window) / 2, kNibblesInCode - 1);
    const std::uint32_t value = window >> (28 - 4 * more);
    nibble_ += static_cast<std::size_t>(more) + 1;
    return {static_cast<int>(value >> 2U), static_cast<std::uint8_t>(value & 3U)};
  }

  void EndRow() { nibble_ = (nibble_ + 1) & ~std::size_t{1}; }
  // Valid at a row's beginning.
  [[nodiscard]] std::size_t Position() const { return nibble_ / 2; }

 private:
  // The next code in the high half; what follows it below.
  [[nodiscard]] std::uint32_t Window() const {
    const std::size_t at = nibble_ / 2;
    std::uint32_t word = 0;
    if (at + sizeof word <= bytes_.size()) {
      const std::uint8_t* byte = bytes_.data() + at;
      word = std::uint32_t{byte[0]} << 24U | std::uint32_t{byte[1]} << 16U |
             std::uint32_t{byte[2]} << 8U | std::uint32_t{byte[3]};
    } else {
      for (std::size_t i = 0; i < sizeof word; ++i) word = word << 8U | GetByte(bytes_, at + i);
    }
    return word << (nibble_ % 2 * 4);
  }

  ByteSpan bytes_;
  std::size_t nibble_;
};

// Writes runs one after the other. A short run is written as one block, the rest of which the
// following rows write over: so rows must come from top to bottom.
class PixelWriter {
 public:
  explicit PixelWriter(std::vector<std::uint8_t>& pixels)
      : out_(pixels.data()), end_(pixels.data() + pixels.size()) {}

  void Write(int length, std::uint8_t type) {
    if (length <= kBlock && end_ - out_ >= kBlock) {
      std::memset(out_, type, kBlock);
    } else {
      std::memset(out_, type, static_cast<std::size_t>(length));
    }
    out_ += length;
  }

 private:
  static constexpr int kBlock = 16;
  std::uint8_t* out_;
  std::uint8_t* end_;
};

// Type of the background: that of the first pixel; but tightly cropped pictures begin on an
// outline, so an opaque one gives way to the only type that the first sequence makes transparent.
int FindBackground(const SpuState& state, int firstType) {
  if (state.sequences.empty()) return firstType;
  const auto& commands = state.sequences.front().commands;
  const auto contrast = std::find_if(commands.begin(), commands.end(), [](const SpuCommand& each) {
    return each.code == kSetContrast;
  });
  if (contrast == commands.end()) return firstType;
  const PixelTypeValues& alphas = contrast->arguments;
  if (alphas[static_cast<std::size_t>(firstType)] != kOpaque) return firstType;
  if (std::count(alphas.begin(), alphas.end(), 0) != 1) return firstType;
  return static_cast<int>(std::find(alphas.begin(), alphas.end(), 0) - alphas.begin());
}

class BitmapDecoder {
 public:
  BitmapDecoder(SubpictureUnit& unit, const SpuContext& context)
      : unit_(unit),
        state_(unit.state),
        width_(state_.width),
        height_(state_.areaAsFound.LinesInFrame(FrameHeight(context.standard))),
        readers_{FieldReader(state_.bytes, FieldStart(0)),
                 FieldReader(state_.bytes, FieldStart(1))} {}

  Result Decode() {
    if (width_ == 0 || height_ == 0) return Result::kFailed;
    statistics_.backgroundType =
        state_.decoded ? state_.statistics.backgroundType : FindBackground(state_, FirstType());
    unit_.pixels.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    PixelWriter writer(unit_.pixels);
    for (int row = 0; row < height_; ++row) DecodeRow(row, writer);
    if (state_.decoded) {
      state_.statistics.pixelCounts = statistics_.pixelCounts;
      return Result::kDone;
    }
    SkipRowsBelowFrame();
    KeepStatistics();
    return Result::kDone;
  }

 private:
  // Later edits may have moved the fields' offsets to hide rows; the bitmap keeps them all.
  [[nodiscard]] std::uint16_t FieldStart(std::size_t field) const {
    if (state_.decoded) return state_.statistics.lineStarts[field];
    return field == 0 ? state_.topOffset : state_.bottomOffset;
  }

  [[nodiscard]] int FirstType() const {
    FieldReader reader = readers_[0];
    return reader.Next().type;
  }

  void DecodeRow(int row, PixelWriter& writer) {
    FieldReader reader = readers_[static_cast<std::size_t>(row % 2)];
    NoteLineStart(row, reader);
    int firstContent = width_;
    int afterContent = 0;
    for (int column = 0; column < width_;) {
      const Run run = reader.Next();
      const int left = width_ - column;
      const int length = run.length == 0 ? left : std::min(run.length, left);
      writer.Write(length, run.type);
      statistics_.pixelCounts[run.type] += static_cast<std::uint32_t>(length);
      const bool content = run.type != statistics_.backgroundType;
      firstContent = content ? std::min(firstContent, column) : firstContent;
      column += length;
      afterContent = content ? column : afterContent;
    }
    reader.EndRow();
    readers_[static_cast<std::size_t>(row % 2)] = reader;
    if (afterContent > 0) statistics_.box.Add(row, firstContent, afterContent - 1);
  }

  void SkipRowsBelowFrame() {
    const int rows = state_.areaAsFound.Lines();
    for (int row = height_; row < rows; ++row) {
      FieldReader& reader = readers_[static_cast<std::size_t>(row % 2)];
      NoteLineStart(row, reader);
      for (int column = 0; column < width_;) {
        const int length = reader.Next().length;
        column = length == 0 ? width_ : column + length;
      }
      reader.EndRow();
    }
    for (int row = rows; row < rows + 2; ++row) {
      const auto field = static_cast<std::size_t>(row % 2);
      NoteLineStart(row, readers_[field]);
      statistics_.fieldEnds[field] = static_cast<int>(readers_[field].Position());
    }
  }

  void NoteLineStart(int row, const FieldReader& reader) {
    const auto index = static_cast<std::size_t>(row);
    if (index >= kLineTableSize) return;
    const auto last = static_cast<std::size_t>(kMaxSpuSize);
    statistics_.lineStarts[index] =
        static_cast<std::uint16_t>(std::min<std::size_t>(reader.Position(), last));
  }

  void KeepStatistics() {
    if (statistics_.box.top < 0) {
      statistics_.empty = true;
      statistics_.box = ContentBox::OfEmptyBitmap(width_, height_);
    }
    state_.statistics = statistics_;
    // The standard may have been unknown when the area was parsed.
    state_.height = height_;
    const auto& ends = statistics_.fieldEnds;
    state_.spareRoom = std::max(0, state_.dcsqtOffset - std::max(ends[0], ends[1]));
    state_.decoded = true;
  }

  SubpictureUnit& unit_;
  SpuState& state_;
  int width_;
  int height_;
  std::array<FieldReader, 2> readers_;
  BitmapStatistics statistics_;
};

}  // namespace

Result DecodeBitmap(SubpictureUnit& unit, const SpuContext& context) {
  if (!unit.complete) return Result::kFailed;
  return BitmapDecoder(unit, context).Decode();
}

Result NeedBitmap(SubpictureUnit& unit, const SpuContext& context) {
  if (unit.state.decoded && !unit.pixels.empty()) return Result::kDone;
  return DecodeBitmap(unit, context);
}

}  // namespace quillomar
