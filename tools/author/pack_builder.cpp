#include "author/pack_builder.h"

#include <algorithm>

#include "dvd/big_endian.h"

namespace quillomar::author {
namespace {

constexpr std::size_t kPayloadEnd = kSectorSize;
constexpr std::size_t kPacketHeaderSize = 6;  // start code and length
constexpr std::size_t kBufferSizeHeader = 8;  // PTS, extension flags and buffer size
constexpr std::size_t kUnitBytesOffset = kPesHeaderDataOffset + 1;

std::size_t LengthBetween(std::size_t begin, std::size_t end) {
  return end - begin - kPacketHeaderSize;
}

// A packet of the given stream from `begin` to `end`, its content not yet written.
void PutPacket(Sector& sector, std::uint32_t code, std::size_t begin, std::size_t end) {
  PutInt(sector, begin, code);
  PutShort(sector, begin + 4, static_cast<std::uint16_t>(LengthBetween(begin, end)));
}

void PutPadding(Sector& sector, std::size_t begin) {
  PutPacket(sector, kPaddingStream, begin, kPayloadEnd);
  std::fill(sector.begin() + static_cast<std::ptrdiff_t>(begin + kPacketHeaderSize), sector.end(),
            std::uint8_t{0xFF});
}

// Header data of the given length: the PTS and the buffer size as asked for, stuffing behind.
struct PesHeader {
  std::size_t length = kTimeStampSize;
  std::optional<std::uint64_t> pts;
  bool bufferSize = false;
};

void PutPesHeader(Sector& sector, const PesHeader& header) {
  sector[kPesFlagsOffset] = 0x81;
  sector[kPesFlags2Offset] = static_cast<std::uint8_t>(header.bufferSize ? 0x01 : 0x00);
  sector[kPesHeaderLengthOffset] = static_cast<std::uint8_t>(header.length);
  const auto data = std::span(sector).subspan(kPesHeaderDataOffset, header.length);
  std::fill(data.begin(), data.end(), std::uint8_t{0xFF});
  if (!header.pts) return;
  sector[kPesFlags2Offset] |= 0x80;
  data[0] = (*header.pts >> 32 & 1) != 0 ? 0x08 : 0x00;
  PutTimeStamp(data, static_cast<std::uint32_t>(*header.pts));
  if (!header.bufferSize) return;
  data[kTimeStampSize] = 0x1E;
  PutShort(data, kTimeStampSize + 1, 0x603A);
}

Sector MakeSubpicturePack(ByteSpan part, const SubpictureSpec& spec, std::size_t index) {
  Sector sector = MakeEmptyPack(spec.clock + index * kPackTicks);
  PesHeader header;
  header.length = index == 0 ? static_cast<std::size_t>(spec.firstHeaderLength) : 0;
  if (header.length >= kTimeStampSize) header.pts = spec.pts;
  header.bufferSize = header.length == kBufferSizeHeader;
  const std::size_t left = kPayloadEnd - kUnitBytesOffset - header.length - part.size();
  const bool tooLittle = left < kPacketHeaderSize;
  if (tooLittle) header.length += left;
  PutPesHeader(sector, header);
  const std::size_t begin = kUnitBytesOffset + header.length;
  sector[begin - 1] = static_cast<std::uint8_t>(kFirstSubpictureId + spec.stream);
  std::copy(part.begin(), part.end(), sector.begin() + static_cast<std::ptrdiff_t>(begin));
  PutPacket(sector, kPrivateStream1, kPesStartOffset, begin + part.size());
  if (!tooLittle && spec.paddingPacket) PutPadding(sector, begin + part.size());
  return sector;
}

void PutExtent(Sector& sector, std::size_t offset, unsigned upper, unsigned start, unsigned end) {
  sector[offset] = static_cast<std::uint8_t>(upper << 6 | start >> 4);
  sector[offset + 1] = static_cast<std::uint8_t>((start & 15) << 4 | end >> 8);
  sector[offset + 2] = static_cast<std::uint8_t>(end);
}

void PutButton(Sector& sector, std::size_t offset, const Button& button) {
  PutExtent(sector, offset + kButtonColumnsOffset, button.colourNumber, button.x,
            static_cast<unsigned>(button.x + button.width));
  PutExtent(sector, offset + kButtonLinesOffset, button.autoAction ? 1 : 0, button.y,
            static_cast<unsigned>(button.y + button.height));
  sector[offset + kButtonUpOffset] = button.up;
  sector[offset + kButtonDownOffset] = button.down;
  sector[offset + kButtonLeftOffset] = button.left;
  sector[offset + kButtonRightOffset] = button.right;
}

void PutHighlight(Sector& sector, const Highlight& highlight) {
  PutShort(sector, kNavHighlightStatusOffset, kNewHighlight);
  std::size_t offset = kNavButtonColoursOffset;
  for (const ButtonColours& entry : highlight.colours) {
    for (std::size_t i = 0; i < entry.size(); i += 2) {
      sector[offset++] = static_cast<std::uint8_t>(entry[i] << 4 | entry[i + 1]);
    }
  }
  offset = kNavButtonsOffset;
  for (const Button& button : highlight.buttons) {
    PutButton(sector, offset, button);
    offset += kButtonSize;
  }
}

}  // namespace

Sector MakeEmptyPack(std::uint64_t clock) {
  Sector sector{};
  PutInt(sector, 0, 0x000001BA);
  PutClockReference(sector, {clock, 0});
  sector[10] = 0x01;  // the multiplex rate of a DVD, 10.08 Mbit/s
  sector[11] = 0x89;
  sector[12] = 0xC3;
  sector[13] = 0xF8;  // no stuffing
  return sector;
}

Sector MakePaddingPack(std::uint64_t clock) {
  Sector sector = MakeEmptyPack(clock);
  PutPadding(sector, kPesStartOffset);
  return sector;
}

Sector MakePrivatePack(std::uint64_t clock, std::uint8_t subStreamId) {
  Sector sector = MakeEmptyPack(clock);
  PutPacket(sector, kPrivateStream1, kPesStartOffset, kPayloadEnd);
  PutPesHeader(sector, {.pts = clock});
  sector[kPesHeaderDataOffset + kTimeStampSize] = subStreamId;
  return sector;
}

Sector MakeNavPack(const NavSpec& spec) {
  Sector sector = MakeEmptyPack(spec.clock);
  PutInt(sector, kPesStartOffset, 0x000001BB);  // system header
  PutShort(sector, kPesLengthOffset, 18);
  PutPacket(sector, kPrivateStream2, kPciPacketOffset, kDsiPacketOffset);
  PutPacket(sector, kPrivateStream2, kDsiPacketOffset, kPayloadEnd);
  sector[kDsiPacketOffset + kPacketHeaderSize] = 1;  // DSI; 0 is PCI
  PutInt(sector, kNavLbaOffset, spec.lba);
  PutInt(sector, kNavStartTimeOffset, spec.startTime);
  PutInt(sector, kNavEndTimeOffset, spec.endTime);
  PutShort(sector, kNavVobIdOffset, spec.vcid.vobId);
  sector[kNavCellIdOffset] = spec.vcid.cellId;
  PutShort(sector, kNavCategoryOffset, spec.category);
  std::fill_n(sector.begin() + kNavSearchInfoOffset, kNavSearchInfoSize, spec.searchFill);
  const std::size_t newButtons = spec.highlight ? spec.highlight->buttons.size() : 0;
  sector[kNavButtonCountOffset] =
      static_cast<std::uint8_t>(spec.highlight ? static_cast<int>(newButtons) : spec.buttonCount);
  if (spec.highlight) PutHighlight(sector, *spec.highlight);
  return sector;
}

Bytes SequenceHeader(int width, int height, int aspect) {
  Bytes bytes{0, 0, 1, 0xB3, 0, 0, 0, 0, 0xFF, 0xFF, 0xE0, 0x18};
  PutInt(bytes, 4, static_cast<std::uint32_t>(width << 20 | height << 8 | aspect << 4 | 4));
  return bytes;
}

Bytes SequenceExtension() {
  return {0, 0, 1, 0xB5, 0x14, 0x8A, 0x00, 0x01, 0x00, 0x00};
}

Bytes PictureHeader(int type) {
  return {0, 0, 1, 0, 0, static_cast<std::uint8_t>(type << 3), 0xFF, 0xF8};
}

Bytes ClosedCaptions() {
  return {0, 0, 1, 0xB2, 0x43, 0x43, 0x01, 0xF8, 0x9E, 0xFF, 0x80, 0x80};
}

Sector MakeVideoPack(std::uint64_t clock, const std::vector<Bytes>& pieces) {
  Sector sector = MakeEmptyPack(clock);
  PutPacket(sector, kVideoStream, kPesStartOffset, kPayloadEnd);
  PutPesHeader(sector, {.pts = clock});
  std::size_t offset = kPesHeaderDataOffset + kTimeStampSize;
  for (const Bytes& piece : pieces) {
    const std::size_t count = std::min(piece.size(), kPayloadEnd - offset);
    std::copy_n(piece.begin(), count, sector.begin() + static_cast<std::ptrdiff_t>(offset));
    offset += count;
  }
  return sector;
}

std::vector<Sector> MakeSubpicturePacks(ByteSpan unit, const SubpictureSpec& spec) {
  const std::size_t room = kPayloadEnd - kUnitBytesOffset;
  const std::size_t firstRoom = room - static_cast<std::size_t>(spec.firstHeaderLength);
  std::size_t share = room;
  if (spec.packs > 0) share = (unit.size() + spec.packs - 1) / spec.packs;
  std::vector<Sector> packs;
  while (packs.empty() || !unit.empty()) {
    const std::size_t limit = std::min(share, packs.empty() ? firstRoom : room);
    const ByteSpan part = unit.first(std::min(limit, unit.size()));
    packs.push_back(MakeSubpicturePack(part, spec, packs.size()));
    unit = unit.subspan(part.size());
  }
  return packs;
}

VobBuilder& VobBuilder::Add(const Sector& sector) {
  image_.insert(image_.end(), sector.begin(), sector.end());
  return *this;
}

VobBuilder& VobBuilder::Add(const std::vector<Sector>& sectors) {
  for (const Sector& sector : sectors) Add(sector);
  return *this;
}

std::uint32_t VobBuilder::Size() const {
  return static_cast<std::uint32_t>(image_.size() / kSectorSize);
}

}  // namespace quillomar::author
