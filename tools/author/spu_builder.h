#pragma once

#include <string>
#include <vector>

#include "spu/subpicture_unit.h"

namespace quillomar::author {

// Commands as bytes: the code and its arguments.
Bytes ColourCommand(const PixelTypeValues& indices);
Bytes ContrastCommand(const PixelTypeValues& alphas);
Bytes AreaCommand(const DisplayArea& area);
Bytes FieldOffsetsCommand(int top, int bottom);

struct ColconBandDescription {
  int topLine = 0;
  int bottomLine = 0;
  struct Column {
    int start = 0;
    PixelTypeValues colours{};
    PixelTypeValues alphas{};
  };
  std::vector<Column> columns;
};
Bytes ColconCommand(const std::vector<ColconBandDescription>& bands);

// What a unit is made of.
struct SpuDescription {
  std::vector<std::string> rows;  // one digit, '0' to '3', for each pixel; all of one length
  int x = 0, y = 0;               // place of the first pixel
  struct Sequence {
    int delay = 0;  // units of 1024/90000 s
    std::vector<Bytes> commands;
  };
  // The first one also gets the display area and the field offsets; all get the end marker.
  std::vector<Sequence> sequences;
  int spareBytes = 0;  // between the bitmap and the control sequences
};

// A description that starts at once with colours 0, 1, 2, 3 and a transparent background, and stops
// after `stopDelay` units.
SpuDescription Subtitle(std::vector<std::string> rows, int x, int y, int stopDelay);
// Rows of equal runs of random types and lengths, for codec tests.
std::vector<std::string> RandomRows(unsigned seed, int width, int height, int longestRun);

Bytes BuildSpu(const SpuDescription& description);
// The run codes of one field: every second row from `first` on.
Bytes BuildField(const std::vector<std::string>& rows, std::size_t first);

// A complete unit of these bytes, number 7 at LBA 1234, not parsed.
SubpictureUnit MakeUnit(const Bytes& bytes);

// The unit's pixels as rows of digits.
std::vector<std::string> PixelRows(const SubpictureUnit& unit);

}  // namespace quillomar::author
