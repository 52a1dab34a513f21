#include "dvd/nav_pack.h"

#include <algorithm>

#include "dvd/big_endian.h"

namespace quillomar {
namespace {

constexpr std::uint8_t kLow6Bits = 0x3F;

struct Extent {
  std::uint16_t start = 0;
  std::uint16_t length = 0;
};

// Start and end in 10 bits each, packed into three bytes below two bits of another field.
Extent ReadExtent(std::span<const std::uint8_t> bytes) {
  const int start = (bytes[0] & kLow6Bits) << 4 | bytes[1] >> 4;
  const int end = (bytes[1] & 0x03) << 8 | bytes[2];
  return {static_cast<std::uint16_t>(start), static_cast<std::uint16_t>(std::max(0, end - start))};
}

Button ReadButton(std::span<const std::uint8_t> bytes) {
  const Extent columns = ReadExtent(bytes.subspan(kButtonColumnsOffset));
  const Extent lines = ReadExtent(bytes.subspan(kButtonLinesOffset));
  Button button;
  button.colourNumber = bytes[kButtonColumnsOffset] >> 6;
  button.autoAction = bytes[kButtonLinesOffset] >> 6 != 0;
  button.x = columns.start;
  button.width = columns.length;
  button.y = lines.start;
  button.height = lines.length;
  button.up = bytes[kButtonUpOffset] & kLow6Bits;
  button.down = bytes[kButtonDownOffset] & kLow6Bits;
  button.left = bytes[kButtonLeftOffset] & kLow6Bits;
  button.right = bytes[kButtonRightOffset] & kLow6Bits;
  return button;
}

ButtonColours ReadColours(std::span<const std::uint8_t> bytes) {
  ButtonColours colours{};
  for (std::size_t i = 0; i < kButtonColoursSize; ++i) {
    colours[2 * i] = bytes[i] >> 4;
    colours[2 * i + 1] = bytes[i] & 0x0F;
  }
  return colours;
}

Highlight ReadHighlight(SectorView sector, int buttonCount) {
  Highlight highlight;
  for (std::size_t i = 0; i < kButtonColourEntries; ++i) {
    highlight.colours[i] =
        ReadColours(sector.subspan(kNavButtonColoursOffset + i * kButtonColoursSize));
  }
  for (std::size_t b = 0; b < static_cast<std::size_t>(buttonCount); ++b) {
    highlight.buttons.push_back(ReadButton(sector.subspan(kNavButtonsOffset + b * kButtonSize)));
  }
  return highlight;
}

}  // namespace

NavPack ParseNavPack(SectorView sector) {
  NavPack nav;
  nav.startTime = GetInt(sector, kNavStartTimeOffset);
  nav.endTime = GetInt(sector, kNavEndTimeOffset);
  nav.vcid = {GetShort(sector, kNavVobIdOffset), sector[kNavCellIdOffset]};
  nav.buttonCount = std::min<int>(sector[kNavButtonCountOffset], kMaxButtons);
  nav.interleaved = GetShort(sector, kNavCategoryOffset) != 0;
  if (GetShort(sector, kNavHighlightStatusOffset) == kNewHighlight) {
    nav.highlight = ReadHighlight(sector, nav.buttonCount);
  }
  return nav;
}

SearchInfo CopySearchInfo(SectorView sector) {
  SearchInfo info{};
  const auto source = sector.subspan<kNavSearchInfoOffset, kNavSearchInfoSize>();
  std::copy(source.begin(), source.end(), info.begin());
  return info;
}

}  // namespace quillomar
