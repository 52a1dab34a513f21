#include "author/spu_builder.h"

#include <random>

namespace quillomar::author {
namespace {

// Grows by big-endian fields, or by nibbles.
class Writer {
 public:
  void Byte(std::size_t value) { bytes.push_back(static_cast<std::uint8_t>(value)); }
  void Short(std::size_t value) {
    Byte(value >> 8U);
    Byte(value & 0xFFU);
  }
  void Append(const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }
  void Values(const PixelTypeValues& values) {
    Byte(std::size_t{values[3]} << 4U | values[2]);
    Byte(std::size_t{values[1]} << 4U | values[0]);
  }
  Bytes bytes;
};

Bytes ValuesCommand(std::size_t code, const PixelTypeValues& values) {
  Writer out;
  out.Byte(code);
  out.Values(values);
  return out.bytes;
}

// A run as text of hexadecimal digits, one for each nibble.
std::string RunNibbles(std::size_t length, std::size_t type) {
  const std::size_t value = length * 4 + type;
  std::size_t count = 1;
  while (count < 4 && (length == 0 || length >> (2 * count) != 0)) ++count;
  std::string nibbles;
  while (count-- > 0) nibbles += static_cast<char>(value >> (4 * count) & 0xFU);
  return nibbles;
}

std::string RowNibbles(const std::string& row) {
  std::string nibbles;
  for (std::size_t at = 0; at < row.size();) {
    std::size_t end = row.find_first_not_of(row[at], at);
    if (end == std::string::npos) end = row.size();
    std::size_t length = end - at;
    const auto type = static_cast<std::size_t>(row[at] - '0');
    if (end == row.size() && length > 63) {
      nibbles += RunNibbles(0, type);
      break;
    }
    if (length > 255) length = 255;
    nibbles += RunNibbles(length, type);
    at += length;
  }
  if (nibbles.size() % 2 != 0) nibbles += '\0';
  return nibbles;
}

Bytes Sequences(const SpuDescription& description, std::size_t start, std::size_t bottomOffset) {
  const int width = description.rows.empty() ? 0 : static_cast<int>(description.rows[0].size());
  const int height = static_cast<int>(description.rows.size());
  const auto edge = [](int value) { return static_cast<std::uint16_t>(value); };
  const DisplayArea area{edge(description.x), edge(description.x + width - 1), edge(description.y),
                         edge(description.y + height - 1)};
  Writer out;
  for (std::size_t i = 0; i < description.sequences.size(); ++i) {
    const auto& sequence = description.sequences[i];
    Writer commands;
    for (const Bytes& command : sequence.commands) commands.Append(command);
    if (i == 0) {
      commands.Append(AreaCommand(area));
      commands.Append(FieldOffsetsCommand(kSpuHeaderSize, static_cast<int>(bottomOffset)));
    }
    commands.Byte(kEndOfCommands);
    const std::size_t own = start + out.bytes.size();
    const bool last = i + 1 == description.sequences.size();
    out.Short(static_cast<std::size_t>(sequence.delay));
    out.Short(last ? own : own + kSequenceHeaderSize + commands.bytes.size());
    out.Append(commands.bytes);
  }
  return out.bytes;
}

}  // namespace

Bytes ColourCommand(const PixelTypeValues& indices) {
  return ValuesCommand(kSetColour, indices);
}

Bytes ContrastCommand(const PixelTypeValues& alphas) {
  return ValuesCommand(kSetContrast, alphas);
}

Bytes AreaCommand(const DisplayArea& area) {
  Writer out;
  out.Byte(kSetDisplayArea);
  const auto pair = [&out](std::size_t first, std::size_t second) {
    out.Byte(first >> 4U);
    out.Byte((first & 0xFU) << 4U | second >> 8U);
    out.Byte(second & 0xFFU);
  };
  pair(area.sx, area.ex);
  pair(area.sy, area.ey);
  return out.bytes;
}

Bytes FieldOffsetsCommand(int top, int bottom) {
  Writer out;
  out.Byte(kSetFieldOffsets);
  out.Short(static_cast<std::size_t>(top));
  out.Short(static_cast<std::size_t>(bottom));
  return out.bytes;
}

Bytes ColconCommand(const std::vector<ColconBandDescription>& bands) {
  Writer area;
  for (const auto& band : bands) {
    area.Short(static_cast<std::size_t>(band.topLine));
    area.Short(band.columns.size() << 12U | static_cast<std::size_t>(band.bottomLine));
    for (const auto& column : band.columns) {
      area.Short(static_cast<std::size_t>(column.start));
      area.Values(column.colours);
      area.Values(column.alphas);
    }
  }
  Writer out;
  out.Byte(kChangeColcon);
  out.Short(area.bytes.size() + 2 + 4);
  out.Append(area.bytes);
  out.Append({0x0F, 0xFF, 0xFF, 0xFF});
  return out.bytes;
}

SpuDescription Subtitle(std::vector<std::string> rows, int x, int y, int stopDelay) {
  SpuDescription description;
  description.rows = std::move(rows);
  description.x = x;
  description.y = y;
  description.sequences = {
      {0, {{kStart}, ColourCommand({0, 1, 2, 3}), ContrastCommand({0, 15, 15, 15})}},
      {stopDelay, {{kStop}}},
  };
  return description;
}

std::vector<std::string> RandomRows(unsigned seed, int width, int height, int longestRun) {
  std::mt19937 random(seed);
  const auto upTo = [&random](int most) {
    return static_cast<std::size_t>(random() % static_cast<unsigned>(most));
  };
  std::vector<std::string> rows(static_cast<std::size_t>(height));
  for (std::string& row : rows) {
    while (row.size() < static_cast<std::size_t>(width)) {
      const std::size_t length = upTo(longestRun) + 1;
      row.append(length, static_cast<char>('0' + upTo(kPixelTypes)));
    }
    row.resize(static_cast<std::size_t>(width));
  }
  return rows;
}

Bytes BuildField(const std::vector<std::string>& rows, std::size_t first) {
  Bytes field;
  for (std::size_t row = first; row < rows.size(); row += 2) {
    const std::string nibbles = RowNibbles(rows[row]);
    for (std::size_t i = 0; i < nibbles.size(); i += 2) {
      field.push_back(static_cast<std::uint8_t>(nibbles[i] << 4 | nibbles[i + 1]));
    }
  }
  return field;
}

Bytes BuildSpu(const SpuDescription& description) {
  Writer body;
  body.Append(BuildField(description.rows, 0));
  const std::size_t bottomOffset = kSpuHeaderSize + body.bytes.size();
  body.Append(BuildField(description.rows, 1));
  body.bytes.resize(body.bytes.size() + static_cast<std::size_t>(description.spareBytes));
  const std::size_t start = kSpuHeaderSize + body.bytes.size();
  body.Append(Sequences(description, start, bottomOffset));
  Writer unit;
  unit.Short(kSpuHeaderSize + body.bytes.size());
  unit.Short(start);
  unit.Append(body.bytes);
  return unit.bytes;
}

SubpictureUnit MakeUnit(const Bytes& bytes) {
  SubpictureUnit unit;
  unit.state.bytes = bytes;
  unit.packs = {{0, 1234, 1234}};
  unit.number = 7;
  unit.complete = true;
  return unit;
}

std::vector<std::string> PixelRows(const SubpictureUnit& unit) {
  std::vector<std::string> rows;
  const auto width = static_cast<std::size_t>(unit.state.width);
  for (std::size_t at = 0; width > 0 && at < unit.pixels.size(); at += width) {
    std::string& row = rows.emplace_back();
    for (std::size_t i = 0; i < width; ++i) row += static_cast<char>('0' + unit.pixels[at + i]);
  }
  return rows;
}

}  // namespace quillomar::author
