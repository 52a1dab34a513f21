#include "check_retimed/disc_model.h"

#include <dvdnav/dvdnav.h>
#include <dvdread/dvd_reader.h>
#include <dvdread/ifo_read.h>
#include <dvdread/nav_read.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <limits>

#include "base/platform.h"
#include "dvd/big_endian.h"
#include "dvd/pack.h"

namespace quillomar::check {
namespace {

// Where libdvdread wants its pointers: behind the packet's header and sub-stream id.
constexpr std::size_t kPciData = 0x2D;
constexpr std::size_t kDsiData = 0x407;

Bytes FileBytes(const std::string& path) {
  constexpr std::uint64_t kLimit = std::uint64_t{1} << 31;
  return ReadWholeFile(*MakeDiskFileSystem(), path, kLimit).value_or(Bytes());
}

std::string TitleFile(const std::string& folder, const std::string& name) {
  return folder + "/VTS_01_" + name;
}

// The last sequence's delay ends the unit.
std::int64_t DurationTicks(const Bytes& unit) {
  std::size_t sequence = GetShort(unit, 2);
  for (int steps = 0; steps < 1000; ++steps) {
    const std::size_t next = GetShort(unit, sequence + 2);
    if (next == sequence) {
      return steps == 0 ? std::numeric_limits<std::int32_t>::max()
                        : std::int64_t{GetShort(unit, sequence)} * 1024;
    }
    sequence = next;
  }
  return 0;
}

}  // namespace

DiscModel::DiscModel(const std::string& discFolder) : folder(discFolder) {
  ReadVobs();
  ReadIfo();
}

ByteSpan DiscModel::Sector(std::uint32_t lba) const {
  return ByteSpan(bytes).subspan(std::size_t{lba} * kSectorSize, kSectorSize);
}

std::uint32_t DiscModel::Sectors() const {
  return static_cast<std::uint32_t>(bytes.size() / kSectorSize);
}

int DiscModel::VobuAtStart(std::int64_t lba) const {
  const auto found = std::lower_bound(navs.begin(), navs.end(), lba);
  return found != navs.end() && *found == lba ? static_cast<int>(found - navs.begin()) : -1;
}

void DiscModel::ReadVobs() {
  for (int piece = 1; piece <= 9; ++piece) {
    const std::string path = TitleFile(folder, std::to_string(piece) + ".VOB");
    if (!std::filesystem::exists(path)) continue;
    const Bytes content = FileBytes(path);
    fileSizes.push_back(content.size());
    bytes.insert(bytes.end(), content.begin(), content.end());
  }
  std::map<int, Bytes> unfinished;
  for (std::uint32_t lba = 0; lba < Sectors(); ++lba) {
    const PackInfo info = ClassifyPack(Sector(lba).first<kSectorSize>());
    if (info.kind == PackKind::kSubpicture) {
      TakeSubpicture(lba, unfinished);
      continue;
    }
    if (info.kind == PackKind::kNav) TakeNavPack(lba);
    rankOf[lba] = statics.size();
    statics.push_back(lba);
  }
}

bool DiscModel::RunsOn(std::size_t a, std::size_t b) const {
  return stretches[a] == stretches[b];
}

void DiscModel::TakeNavPack(std::uint32_t lba) {
  Bytes copy(Sector(lba).begin(), Sector(lba).end());
  navs.push_back(lba);
  navRead_PCI(&pcis.emplace_back(), copy.data() + kPciData);
  navRead_DSI(&dsis.emplace_back(), copy.data() + kDsiData);
  const std::size_t last = pcis.size() - 1;
  const bool first = last == 0;
  const bool restarts = !first && pcis[last - 1].pci_gi.vobu_e_ptm > pcis[last].pci_gi.vobu_s_ptm;
  stretches.push_back(first ? 0 : stretches.back() + (restarts ? 1 : 0));
}

void DiscModel::TakeSubpicture(std::uint32_t lba, std::map<int, Bytes>& unfinished) {
  const auto sector = Sector(lba).first<kSectorSize>();
  const ByteSpan payload = PesPayload(sector);
  const int stream = payload[0] - kFirstSubpictureId;
  if ((sector[kPesFlags2Offset] & 0x80) != 0) {
    const auto start =
        static_cast<std::int64_t>(GetTimeStamp(sector.subspan(kPesHeaderDataOffset)));
    units.push_back({stream, start, 0, navs.size() - 1, {}});
    unfinished[stream].clear();
  }
  Bytes& gathered = unfinished[stream];
  gathered.insert(gathered.end(), payload.begin() + 1, payload.end());
  const auto unit = std::find_if(units.rbegin(), units.rend(),
                                 [&](const UnitOnDisc& each) { return each.stream == stream; });
  unit->lbas.push_back(lba);
  unit->end = unit->start + DurationTicks(gathered);
}

void DiscModel::ReadIfo() {
  const Bytes ifoBytes = FileBytes(TitleFile(folder, "0.IFO"));
  backupEqual = !ifoBytes.empty() && ifoBytes == FileBytes(TitleFile(folder, "0.BUP"));
  dvd_reader_t* const reader = DVDOpen(folder.c_str());
  ifo_handle_t* const ifo = reader != nullptr ? ifoOpen(reader, 1) : nullptr;
  if (ifo != nullptr && ifo->vts_vobu_admap != nullptr && ifo->vts_c_adt != nullptr) {
    ifoParsed = true;
    const std::size_t entries = (ifo->vts_vobu_admap->last_byte + 1 - VOBU_ADMAP_SIZE) / 4;
    const std::uint32_t* const starts = ifo->vts_vobu_admap->vobu_start_sectors;
    addressMap.assign(starts, starts + entries);
    const std::size_t addresses = (ifo->vts_c_adt->last_byte + 1 - C_ADT_SIZE) / sizeof(cell_adr_t);
    for (std::size_t i = 0; i < addresses; ++i) {
      const cell_adr_t& cell = ifo->vts_c_adt->cell_adr_table[i];
      cellAddresses.push_back({cell.vob_id, cell.cell_id, cell.start_sector, cell.last_sector});
    }
    for (int i = 0; i < ifo->vts_pgcit->nr_of_pgci_srp; ++i) {
      const pgc_t& chain = *ifo->vts_pgcit->pgci_srp[i].pgc;
      for (int k = 0; k < chain.nr_of_cells; ++k) {
        const cell_playback_t& cell = chain.cell_playback[k];
        cells.push_back({chain.cell_position[k].vob_id_nr, chain.cell_position[k].cell_nr,
                         cell.first_sector, cell.last_vobu_start_sector, cell.last_sector});
      }
    }
    for (int i = 0; ifo->vts_tmapt != nullptr && i < ifo->vts_tmapt->nr_of_tmaps; ++i) {
      const vts_tmap_t& map = ifo->vts_tmapt->tmap[i];
      for (int k = 0; k < map.nr_of_entries; ++k) timeMap.push_back(map.map_ent[k] & 0x7FFFFFFF);
    }
  }
  if (ifo != nullptr) ifoClose(ifo);
  if (reader != nullptr) DVDClose(reader);
}

namespace {

// Nav packs of one title; -1 on any error.
int PlayTitle(dvdnav_t* player, int number) {
  if (dvdnav_title_play(player, number) != DVDNAV_STATUS_OK) return -1;
  std::array<std::uint8_t, DVD_VIDEO_LB_LEN> block{};
  constexpr int kMostBlocks = 2'000'000;
  int navPacks = 0;
  for (int i = 0; i < kMostBlocks; ++i) {
    std::int32_t event = 0;
    std::int32_t length = 0;
    if (dvdnav_get_next_block(player, block.data(), &event, &length) != DVDNAV_STATUS_OK) return -1;
    if (event == DVDNAV_STILL_FRAME) dvdnav_still_skip(player);
    if (event == DVDNAV_WAIT) dvdnav_wait_skip(player);
    std::int32_t title = 0;
    std::int32_t part = 0;
    const bool inTitle = dvdnav_current_title_info(player, &title, &part) == DVDNAV_STATUS_OK;
    if (event == DVDNAV_STOP || (navPacks > 0 && (!inTitle || title != number))) return navPacks;
    if (event == DVDNAV_NAV_PACKET) ++navPacks;
  }
  return -1;
}

}  // namespace

int PlayWithDvdnav(const std::string& folder) {
  dvdnav_t* player = nullptr;
  if (dvdnav_open(&player, folder.c_str()) != DVDNAV_STATUS_OK) return -1;
  dvdnav_set_readahead_flag(player, 0);
  std::int32_t titles = 0;
  int navPacks = dvdnav_get_number_of_titles(player, &titles) == DVDNAV_STATUS_OK ? 0 : -1;
  for (int number = 1; number <= titles && navPacks >= 0; ++number) {
    const int played = PlayTitle(player, number);
    navPacks = played < 0 ? -1 : navPacks + played;
  }
  dvdnav_close(player);
  return navPacks;
}

}  // namespace quillomar::check
