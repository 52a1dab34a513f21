#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "dvd/big_endian.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

constexpr std::uint16_t kOpaque = 15;

struct Run {
  int length;  // 0: to the end of the row
  std::uint8_t type;
};

// Reads the run codes of one field through a window of 64 bits.
class FieldReader {
 public:
  FieldReader(ByteSpan bytes, std::size_t offset) : bytes_(bytes), next_(offset) {}

  Run Next() {
    if (held_ < kLongestCode) Refill();
    // Each pair of leading zeros makes the code a nibble longer, up to four.
    const int more = std::countl_zero(window_ | kLongestMark) / 2;
    const int bits = kNibble * (more + 1);
    const auto value = static_cast<unsigned>(window_ >> (kWindow - bits));
    window_ <<= bits;
    held_ -= bits;
    return {static_cast<int>(value >> 2U), static_cast<std::uint8_t>(value & 3U)};
  }

  void EndRow() {
    if (held_ % 8 == 0) return;
    window_ <<= kNibble;
    held_ -= kNibble;
  }
  // Valid at a row's beginning.
  [[nodiscard]] std::size_t Position() const { return next_ - static_cast<std::size_t>(held_) / 8; }

 private:
  static constexpr int kNibble = 4;
  static constexpr int kLongestCode = 4 * kNibble;
  static constexpr int kWindow = 64;
  static constexpr std::uint64_t kLongestMark = std::uint64_t{1} << (kWindow - 7);

  // Compilers make one load of this, but not of a loop.
  static std::uint64_t Word(const std::uint8_t* byte) {
    const auto at = [byte](int i) { return std::uint64_t{byte[i]} << (kWindow - 8 - 8 * i); };
    return at(0) | at(1) | at(2) | at(3) | at(4) | at(5) | at(6) | at(7);
  }

  void Refill() {
    std::uint64_t word = 0;
    if (next_ + sizeof word <= bytes_.size()) {
      word = Word(bytes_.data() + next_);
    } else {
      for (std::size_t i = 0; i < sizeof word; ++i) word = word << 8U | GetByte(bytes_, next_ + i);
    }
    // A byte that fits by half is taken again, with the same bits, by the next refill.
    window_ |= word >> held_;
    const int whole = (kWindow - held_) / 8;
    next_ += static_cast<std::size_t>(whole);
    held_ += whole * 8;
  }

  ByteSpan bytes_;
  std::size_t next_;          // first byte that is not counted in held_
  std::uint64_t window_ = 0;  // the next code in the highest bits
  int held_ = 0;              // valid bits of the window
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
        state_.decoded ? state_.statistics.backgroundType : BackgroundTypeOf(state_, FirstType());
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

  // All that the loop changes is local: the pixels' bytes could alias anything else.
  void DecodeRow(int row, PixelWriter& out) {
    FieldReader reader = readers_[static_cast<std::size_t>(row % 2)];
    PixelWriter writer = out;
    NoteLineStart(row, reader);
    const int background = statistics_.backgroundType;
    int firstContent = width_;
    int afterContent = 0;
    std::uint64_t counts = 0;  // 16 bits for each type, enough for a row
    const int width = width_;
    for (int column = 0; column < width;) {
      const Run run = reader.Next();
      const int left = width - column;
      const int length = run.length == 0 ? left : std::min(run.length, left);
      writer.Write(length, run.type);
      counts += static_cast<std::uint64_t>(length) << (16U * run.type);
      const bool content = run.type != background;
      firstContent = content ? std::min(firstContent, column) : firstContent;
      column += length;
      afterContent = content ? column : afterContent;
    }
    reader.EndRow();
    out = writer;
    readers_[static_cast<std::size_t>(row % 2)] = reader;
    for (std::uint32_t& count : statistics_.pixelCounts) {
      count += static_cast<std::uint32_t>(counts & 0xFFFFU);
      counts >>= 16U;
    }
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

int BackgroundTypeOf(const SpuState& state, int firstType) {
  if (state.sequences.empty()) return firstType;
  const auto& commands = state.sequences.front().commands;
  const auto contrast = std::find_if(commands.begin(), commands.end(), [](const SpuCommand& each) {
    return each.code == kSetContrast;
  });
  if (contrast == commands.end()) return firstType;
  const PixelTypeValues& alphas = contrast->arguments;
  // Tightly cropped pictures begin on an outline.
  if (alphas[static_cast<std::size_t>(firstType)] != kOpaque) return firstType;
  if (std::count(alphas.begin(), alphas.end(), 0) != 1) return firstType;
  return static_cast<int>(std::find(alphas.begin(), alphas.end(), 0) - alphas.begin());
}

Result DecodeBitmap(SubpictureUnit& unit, const SpuContext& context) {
  if (!unit.complete) return Result::kFailed;
  return BitmapDecoder(unit, context).Decode();
}

Result NeedBitmap(SubpictureUnit& unit, const SpuContext& context) {
  if (unit.state.decoded && !unit.pixels.empty()) return Result::kDone;
  return DecodeBitmap(unit, context);
}

}  // namespace quillomar
