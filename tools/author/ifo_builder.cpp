#include "author/ifo_builder.h"

#include <algorithm>

#include "dvd/big_endian.h"
#include "dvd/ifo_layout.h"

namespace quillomar::author {
namespace {

constexpr std::size_t kFirstPlayPosition = 0x400;
constexpr std::size_t kCellAddressSize = 12;

std::size_t Grow(Bytes& bytes, std::size_t count) {
  const std::size_t position = bytes.size();
  bytes.resize(position + count);
  return position;
}

void PutText(Bytes& bytes, std::size_t position, const std::string& text) {
  std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(position));
}

void AddPlayback(Bytes& chain, const CellSpec& cell) {
  const std::size_t at = Grow(chain, kCellPlaybackSize);
  PutInt(chain, at + kCellFirstVobuOffset, cell.firstVobu);
  PutInt(chain, at + kCellFirstIlvuEndOffset, cell.firstIlvuEnd);
  PutInt(chain, at + kCellLastVobuOffset, cell.lastVobu);
  PutInt(chain, at + kCellLastVobuEndOffset, cell.lastSector);
}

Bytes Chain(const ChainSpec& spec) {
  Bytes chain(kPgcSize);
  chain[kPgcCellCountOffset] = static_cast<std::uint8_t>(spec.cells.size());
  for (const auto& [logical, control] : spec.audio) {
    PutShort(chain, kPgcAudioOffset + static_cast<std::size_t>(logical) * 2, control);
  }
  for (const auto& [logical, control] : spec.subpictures) {
    PutInt(chain, kPgcSubpictureOffset + static_cast<std::size_t>(logical) * 4, control);
  }
  for (std::size_t i = 0; i < spec.clut.size(); ++i) {
    const Bytes entry = {0, spec.clut[i].y, spec.clut[i].cr, spec.clut[i].cb};
    std::copy(entry.begin(), entry.end(),
              chain.begin() + static_cast<std::ptrdiff_t>(kPgcClutOffset + i * kClutEntrySize));
  }
  if (spec.cells.empty()) return chain;
  PutShort(chain, kPgcPlaybackOffset, static_cast<std::uint16_t>(chain.size()));
  for (const CellSpec& cell : spec.cells) AddPlayback(chain, cell);
  PutShort(chain, kPgcPositionsOffset, static_cast<std::uint16_t>(chain.size()));
  for (const CellSpec& cell : spec.cells) {
    const std::size_t at = Grow(chain, kCellPositionSize);
    PutShort(chain, at + kCellVobIdOffset, cell.vcid.vobId);
    chain[at + kCellIdOffset] = cell.vcid.cellId;
  }
  return chain;
}

// A table of search pointers and their targets.
Bytes SearchTable(const std::vector<Bytes>& targets, const std::vector<std::string>& labels) {
  Bytes table((targets.size() + 1) * kSearchEntrySize);
  PutShort(table, kSearchCountOffset, static_cast<std::uint16_t>(targets.size()));
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const std::size_t entry = (i + 1) * kSearchEntrySize;
    PutText(table, entry, labels[i]);
    PutInt(table, entry + kSearchTargetOffset, static_cast<std::uint32_t>(table.size()));
    table.insert(table.end(), targets[i].begin(), targets[i].end());
  }
  PutInt(table, kTableEndOffset, static_cast<std::uint32_t>(table.size() - 1));
  return table;
}

Bytes ChainTable(const std::vector<ChainSpec>& specs) {
  std::vector<Bytes> chains;
  chains.reserve(specs.size());
  for (const ChainSpec& spec : specs) chains.push_back(Chain(spec));
  return SearchTable(chains, std::vector<std::string>(chains.size(), "\x81"));
}

Bytes UnitTable(const std::vector<MenuUnitSpec>& specs) {
  std::vector<Bytes> units;
  std::vector<std::string> languages;
  for (const MenuUnitSpec& spec : specs) {
    units.push_back(ChainTable(spec.chains));
    languages.push_back(spec.language);
  }
  return SearchTable(units, languages);
}

Bytes VobuMap(const std::vector<std::uint32_t>& starts) {
  Bytes map((starts.size() + 1) * 4);
  PutInt(map, kVobuMapEndOffset, static_cast<std::uint32_t>(map.size() - 1));
  for (std::size_t i = 0; i < starts.size(); ++i) PutInt(map, (i + 1) * 4, starts[i]);
  return map;
}

Bytes CellTable(const std::vector<ChainSpec>& chains) {
  Bytes table(kSearchEntrySize);
  std::uint16_t lastVob = 0;
  for (const ChainSpec& chain : chains) {
    for (const CellSpec& cell : chain.cells) {
      const std::size_t at = Grow(table, kCellAddressSize);
      PutShort(table, at, cell.vcid.vobId);
      table[at + 2] = cell.vcid.cellId;
      PutInt(table, at + 4, cell.firstVobu);
      PutInt(table, at + 8, cell.lastSector);
      lastVob = std::max(lastVob, cell.vcid.vobId);
    }
  }
  PutShort(table, kSearchCountOffset, lastVob);
  PutInt(table, kTableEndOffset, static_cast<std::uint32_t>(table.size() - 1));
  return table;
}

void PutDomain(Bytes& header, const DomainSpec& spec, std::size_t video, std::size_t audio,
               std::size_t subpictureCount) {
  header[video] = spec.video;
  PutShort(header, audio - 2, static_cast<std::uint16_t>(spec.audio.size()));
  for (std::size_t i = 0; i < spec.audio.size(); ++i) {
    const std::size_t at = audio + i * kAudioAttributesSize;
    header[at + kAudioCodingOffset] = static_cast<std::uint8_t>(spec.audio[i].coding << 5);
    header[at + kAudioChannelsOffset] = static_cast<std::uint8_t>(spec.audio[i].channels - 1);
    PutText(header, at + kAudioLanguageOffset, spec.audio[i].language);
  }
  PutShort(header, subpictureCount, static_cast<std::uint16_t>(spec.subpictures.size()));
  for (std::size_t i = 0; i < spec.subpictures.size(); ++i) {
    PutText(header, subpictureCount + 2 + i * kSubpictureAttributesSize + kSubpictureLanguageOffset,
            spec.subpictures[i]);
  }
}

// Puts a table on the next free sector and its number into the header.
void AddTable(Bytes& image, std::size_t pointer, const Bytes& table) {
  PutInt(image, pointer, static_cast<std::uint32_t>(image.size() / kSectorSize));
  image.insert(image.end(), table.begin(), table.end());
  image.resize((image.size() + kSectorSize - 1) / kSectorSize * kSectorSize);
}

std::vector<ChainSpec> MenuChains(const IfoSpec& spec) {
  std::vector<ChainSpec> chains;
  for (const MenuUnitSpec& unit : spec.menuUnits) {
    chains.insert(chains.end(), unit.chains.begin(), unit.chains.end());
  }
  return chains;
}

void AddTitleTables(Bytes& image, const IfoSpec& spec) {
  PutText(image, 0, spec.manager ? "DVDVIDEO-VMG" : "DVDVIDEO-VTS");
  if (spec.titleChains.empty()) return;
  if (!spec.manager) {
    AddTable(image, kIfoTitleChainsOffset, ChainTable(spec.titleChains));
    AddTable(image, kIfoTitleCellsOffset, CellTable(spec.titleChains));
    return;
  }
  const Bytes chain = Chain(spec.titleChains.front());
  PutInt(image, kIfoFirstPlayOffset, kFirstPlayPosition);
  image.resize(std::max(image.size(), kFirstPlayPosition + chain.size()));
  std::copy(chain.begin(), chain.end(), image.begin() + kFirstPlayPosition);
  image.resize((image.size() + kSectorSize - 1) / kSectorSize * kSectorSize);
}

}  // namespace

Bytes BuildIfo(const IfoSpec& spec) {
  Bytes image(kSectorSize);
  PutDomain(image, spec.menu, kMenuVideoOffset, kMenuAudioOffset, kMenuSubpictureCountOffset);
  if (!spec.manager) {
    PutDomain(image, spec.title, kTitleVideoOffset, kTitleAudioOffset, kTitleSubpictureCountOffset);
  }
  AddTitleTables(image, spec);
  if (!spec.menuUnits.empty()) {
    AddTable(image, spec.manager ? kIfoMenuUnitsOffset : kIfoTitleSetMenuUnitsOffset,
             UnitTable(spec.menuUnits));
    AddTable(image, kIfoMenuCellsOffset, CellTable(MenuChains(spec)));
  }
  if (!spec.titleVobus.empty()) AddTable(image, kIfoTitleVobusOffset, VobuMap(spec.titleVobus));
  PutInt(image, kIfoEndSectorOffset, static_cast<std::uint32_t>(image.size() / kSectorSize - 1));
  return image;
}

}  // namespace quillomar::author
