#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"

// Sectors of a VOB, built field by field. Clocks are counts of 90 kHz.
namespace quillomar::author {

// The 90 kHz periods that one pack takes at the multiplex rate of a DVD, rounded down.
inline constexpr std::uint64_t kPackTicks = 146;

// A pack header and nothing behind it.
Sector MakeEmptyPack(std::uint64_t clock);
Sector MakePaddingPack(std::uint64_t clock);
// Private stream 1 with the given sub-stream id and a PTS equal to the clock.
Sector MakePrivatePack(std::uint64_t clock, std::uint8_t subStreamId);

struct NavSpec {
  std::uint64_t clock = 0;
  std::uint32_t lba = 0;  // LBA in set
  std::uint32_t startTime = 0, endTime = 0;
  Vcid vcid{1, 1};
  std::uint16_t category = 0;
  std::optional<Highlight> highlight = {};  // present: a new one, with its buttons
  int buttonCount = 0;                      // without a new highlight
  std::uint8_t searchFill = 0;              // byte that fills the search information
};
Sector MakeNavPack(const NavSpec& spec);

// Pieces of an MPEG video stream, for the payload of a video pack.
Bytes SequenceHeader(int width, int height, int aspect);
Bytes SequenceExtension();
// `type`: 1 for an I-picture, 2 for P, 3 for B.
Bytes PictureHeader(int type);
Bytes ClosedCaptions();
// The payload is cut at the sector's end; the header data is five bytes long.
Sector MakeVideoPack(std::uint64_t clock, const std::vector<Bytes>& pieces);

struct SubpictureSpec {
  int stream = 0;  // 0 to 31
  std::uint64_t pts = 0;
  std::uint64_t clock = 0;    // of the first pack; later ones follow a pack time apart
  int firstHeaderLength = 5;  // 5: PTS alone, 8: with the buffer size extension, 0: no PTS
  std::size_t packs = 0;      // 0: as few as hold the unit; more spread its bytes evenly
  bool paddingPacket = true;  // false: zero bytes follow the data
};
// The packs that carry a unit's bytes: continuation packs without header data, what is left of a
// pack filled by a padding packet or, when that is too little for one, by header stuffing.
std::vector<Sector> MakeSubpicturePacks(ByteSpan unit, const SubpictureSpec& spec);

// Sectors one behind the other.
class VobBuilder {
 public:
  VobBuilder& Add(const Sector& sector);
  VobBuilder& Add(const std::vector<Sector>& sectors);

  // Sectors so far: the LBA of the next one.
  [[nodiscard]] std::uint32_t Size() const;
  [[nodiscard]] const Bytes& Image() const { return image_; }

 private:
  Bytes image_;
};

}  // namespace quillomar::author
