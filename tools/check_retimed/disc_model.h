#pragma once

#include <dvdread/nav_types.h>

#include <map>
#include <string>
#include <vector>

#include "base/file.h"

namespace quillomar::check {

// A unit as it stands on the disc, read without the program's own reader of units.
struct UnitOnDisc {
  int stream = 0;                   // 0 to 31
  std::int64_t start = 0, end = 0;  // 90 kHz
  std::size_t vobu = 0;             // that its first pack lies in
  std::vector<std::uint32_t> lbas;  // its packs
};

// A title set's title domain with its navigation, as libdvdread parses it.
struct DiscModel {
  explicit DiscModel(const std::string& folder);

  [[nodiscard]] ByteSpan Sector(std::uint32_t lba) const;
  [[nodiscard]] std::uint32_t Sectors() const;
  // Index of the nav pack at an LBA; -1 for any other sector.
  [[nodiscard]] int VobuAtStart(std::int64_t lba) const;

  // Whether the clock runs on from one VOBU to another.
  [[nodiscard]] bool RunsOn(std::size_t a, std::size_t b) const;

  std::string folder;
  Bytes bytes;
  std::vector<std::uint64_t> fileSizes;
  std::vector<std::uint32_t> navs;  // LBA of each nav pack
  std::vector<pci_t> pcis;
  std::vector<dsi_t> dsis;
  std::vector<int> stretches;  // of VOBUs whose clock runs on, by VOBU
  std::vector<UnitOnDisc> units;
  std::vector<std::uint32_t> statics;           // LBAs of all sectors but subpicture packs
  std::map<std::uint32_t, std::size_t> rankOf;  // of a static sector

  // IFO.
  bool ifoParsed = false;
  bool backupEqual = false;
  std::vector<std::uint32_t> addressMap;
  // VOB id, cell id, then sectors: of cells first start, last start and end, of addresses start and
  // end.
  std::vector<std::vector<std::uint32_t>> cells;
  std::vector<std::vector<std::uint32_t>> cellAddresses;
  std::vector<std::uint32_t> timeMap;  // all entries without their flag

 private:
  void ReadVobs();
  void TakeNavPack(std::uint32_t lba);
  void TakeSubpicture(std::uint32_t lba, std::map<int, Bytes>& unfinished);
  void ReadIfo();
};

// Nav packs that libdvdnav passes on while it plays every title to its end; -1 on any error.
int PlayWithDvdnav(const std::string& folder);

}  // namespace quillomar::check
