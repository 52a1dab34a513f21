#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "dvd/clut.h"
#include "dvd/sector.h"

namespace quillomar::author {

// A cell of a program chain; sectors count from the domain's first VOB sector.
struct CellSpec {
  Vcid vcid;
  std::uint32_t firstVobu = 0;
  std::uint32_t firstIlvuEnd = 0;
  std::uint32_t lastVobu = 0;
  std::uint32_t lastSector = 0;
};

struct ChainSpec {
  std::vector<CellSpec> cells;
  YCrCbClut clut{};
  std::map<int, std::uint32_t> subpictures;  // stream controls by logical number
  std::map<int, std::uint16_t> audio;        // likewise
};

struct MenuUnitSpec {
  std::string language = "en";
  std::vector<ChainSpec> chains;
};

struct AudioSpec {
  std::uint8_t coding = 0;  // three bits
  std::string language = "en";
  int channels = 2;
};

// Streams of one domain, in the header.
struct DomainSpec {
  std::uint8_t video = 0;
  std::vector<std::string> subpictures;  // languages; of a menu only the first counts
  std::vector<AudioSpec> audio;
};

// What an IFO image is made of. The manager's only title chain is its first-play chain. Tables for
// which nothing is given are left out.
struct IfoSpec {
  bool manager = false;
  DomainSpec title;
  DomainSpec menu;
  std::vector<ChainSpec> titleChains;
  std::vector<MenuUnitSpec> menuUnits;
  std::vector<std::uint32_t> titleVobus;  // start sectors
};

// The image: header sector, then each table on its own sectors; cell address tables follow from the
// chains' cells.
Bytes BuildIfo(const IfoSpec& spec);

}  // namespace quillomar::author
