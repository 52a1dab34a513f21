#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "bitmap/bitmap_export.h"
#include "bitmap/bitmap_import.h"
#include "bitmap/bmp.h"
#include "spu/parse.h"
#include "spu/run_length.h"
#include "support/message_collector.h"
#include "support/spu_builder.h"

namespace quillomar::test {

inline constexpr const char* kBmpPath = "/t.bmp";
inline constexpr TypeColours kColours = {Rgb{10, 20, 30}, Rgb{250, 240, 1}, Rgb{0, 0, 0},
                                         Rgb{9, 99, 200}};

// Units and the PAL frames that they are exchanged as.
class ExchangeTest : public testing::Test {
 protected:
  SubpictureUnit Decoded(const SpuDescription& description, int freeRoom = 40000) {
    return Decoded(BuildSpu(description), freeRoom);
  }
  SubpictureUnit Decoded(const Bytes& bytes, int freeRoom) {
    SubpictureUnit unit = MakeUnit(bytes);
    unit.state.freeRoom = freeRoom;
    EXPECT_EQ(ParseControlSequences(unit, 0, 0, context_), Result::kDone);
    EXPECT_EQ(DecodeBitmap(unit, context_), Result::kDone);
    return unit;
  }
  static SpuDescription Small() {
    return Subtitle({"00000", "01230", "03210", "00000"}, 100, 200, 9);
  }
  Result Export(SubpictureUnit& unit, BmpDepth depth = BmpDepth::k24Bit) {
    return ExportBmp(unit, kBmpPath, depth, kColours, files_, context_);
  }
  Result Import(SubpictureUnit& unit) {
    return ImportBmp(unit, kBmpPath, kColours, files_, context_);
  }
  // A frame of type 0 with one rectangle of another.
  static Bytes Frame(const DisplayArea& box, std::uint8_t type) {
    Bytes frame(std::size_t{720} * 576, 0);
    for (std::size_t y = box.sy; y <= box.ey; ++y) {
      for (std::size_t x = box.sx; x <= box.ex; ++x) frame[y * 720 + x] = type;
    }
    return frame;
  }
  static Bytes EmptyFrame() { return Frame({1, 0, 1, 0}, 0); }
  void PutFrame(const Bytes& frame, int bits = 24) {
    BmpPalette palette{};
    std::copy(kColours.begin(), kColours.end(), palette.begin());
    files_.Put(kBmpPath, MakeBmp(frame, 720, bits, palette));
  }
  // Fails with this message and leaves everything as it was.
  void ExpectRefusal(SubpictureUnit& unit, const char* text) {
    messages_.errors.clear();
    const SubpictureUnit before = unit;
    EXPECT_EQ(Import(unit), Result::kFailed);
    EXPECT_EQ(messages_.errors, std::vector<std::string>{text});
    EXPECT_EQ(unit.state, before.state);
    EXPECT_EQ(unit.pixels, before.pixels);
  }
  // The frame of types that a reader of the unit's bytes alone shows.
  Bytes Screen(const SubpictureUnit& unit) {
    const SubpictureUnit reader = Decoded(unit.state.bytes, 0);
    EXPECT_EQ(reader.pixels, unit.pixels);
    EXPECT_EQ(reader.state.area, unit.state.areaAsFound);
    const SpuState& state = reader.state;
    Bytes frame(std::size_t{720} * 576, static_cast<std::uint8_t>(state.statistics.backgroundType));
    const auto width = static_cast<std::size_t>(state.width);
    for (std::size_t i = 0; i < reader.pixels.size(); ++i) {
      frame[(state.area.sy + i / width) * 720 + state.area.sx + i % width] = reader.pixels[i];
    }
    return frame;
  }

  MessageCollector messages_;
  MemoryFileSystem& files_ = messages_.files;
  ReportLimit limit_{messages_.reporter};
  SpuContext context_{messages_.reporter, limit_, VideoStandard::kPal};
};

}  // namespace quillomar::test
