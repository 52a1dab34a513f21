#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "dvd/sector.h"

// Nav pack (private stream 2): PCI packet at byte 38, DSI packet at byte 1024.
namespace quillomar {

inline constexpr std::size_t kPciPacketOffset = 38;            // u32 start code
inline constexpr std::size_t kNavLbaOffset = 45;               // u32, PCI: own LBA
inline constexpr std::size_t kNavStartTimeOffset = 57;         // u32, 90 kHz
inline constexpr std::size_t kNavEndTimeOffset = 61;           // u32, 90 kHz
inline constexpr std::size_t kNavHighlightStatusOffset = 141;  // u16, 1 = new highlight
inline constexpr std::size_t kNavButtonCountOffset = 158;      // u8
inline constexpr std::size_t kNavButtonColoursOffset = 163;    // 3 entries of 8 bytes
inline constexpr std::size_t kNavButtonsOffset = 187;          // up to 36 entries of 18 bytes
inline constexpr std::size_t kDsiPacketOffset = 1024;          // u32 start code
inline constexpr std::size_t kDsiLbaOffset = 1035;             // u32, DSI: own LBA
inline constexpr std::size_t kVobuEndOffset = 1039;            // u32, last pack, from this one
inline constexpr std::size_t kReferenceEndsOffset = 1043;      // 3 u32, ends of reference frames
inline constexpr int kReferenceEnds = 3;
inline constexpr std::size_t kNavVobIdOffset = 1055;       // u16
inline constexpr std::size_t kNavCellIdOffset = 1058;      // u8
inline constexpr std::size_t kNavCategoryOffset = 1063;    // u16, non-zero = interleaved
inline constexpr std::size_t kNavSearchInfoOffset = 1265;  // VOBU search, synchronisation
inline constexpr std::size_t kNavSearchInfoSize = 271;
inline constexpr std::size_t kNavNextVobuOffset = 1345;      // u32, sectors forward
inline constexpr std::size_t kNavPreviousVobuOffset = 1349;  // u32, sectors back
// Of a search pointer, without its two flag bits.
inline constexpr std::uint32_t kNavDistanceMask = 0x3FFFFFFF;
inline constexpr std::uint32_t kNavNoDistance = 0x3FFFFFFF;

// VOBU search information: distances in sectors to other nav packs. A single entry keeps its
// distance in 31 bits, one of the two runs of 19 in 30 bits; bit 31 is set in all that are valid.
inline constexpr std::size_t kNextVideoOffset = 1265;      // forward, single
inline constexpr std::size_t kForwardRunOffset = 1269;     // 19 entries
inline constexpr std::size_t kNextVobuOffset = 1345;       // forward, single
inline constexpr std::size_t kPreviousVobuOffset = 1349;   // backward, single
inline constexpr std::size_t kBackwardRunOffset = 1353;    // 19 entries
inline constexpr std::size_t kPreviousVideoOffset = 1429;  // backward, single
inline constexpr std::size_t kSearchRunLength = 19;
inline constexpr std::uint32_t kSearchValid = 0x80000000;
inline constexpr std::uint32_t kNoVideoVobu = 0xBFFFFFFF;

// Synchronisation information: for each audio stream the distance to the pack heard at the VOBU's
// start, for each subpicture stream that to the nav pack before the unit shown; the top bit set
// leads backward.
inline constexpr std::size_t kAudioSyncOffset = 1433;  // 8 u16
inline constexpr int kAudioSyncEntries = 8;
inline constexpr std::uint16_t kAudioSyncBackward = 0x8000;
inline constexpr std::uint16_t kNoAudioSync = 0x3FFF;       // as is 0, with and without bit 14
inline constexpr std::size_t kSubpictureSyncOffset = 1449;  // 32 u32
inline constexpr std::uint32_t kSubpictureSyncBackward = 0x80000000;
inline constexpr std::uint32_t kNoSubpictureSync = 0x7FFFFFFF;

inline constexpr std::uint16_t kNewHighlight = 1;

inline constexpr int kMaxButtons = 36;
inline constexpr int kButtonColourEntries = 3;
inline constexpr std::size_t kButtonColoursSize = 8;

// A button's 18 bytes: colour number (2 bits), start and end column (2 + 10 bits each, the upper 2
// of the second unused); auto-action (2 bits), start and end line alike; then the neighbours.
inline constexpr std::size_t kButtonSize = 18;
inline constexpr std::size_t kButtonColumnsOffset = 0;  // 3 bytes
inline constexpr std::size_t kButtonLinesOffset = 3;    // 3 bytes
inline constexpr std::size_t kButtonUpOffset = 6;       // 1 byte each, low 6 bits
inline constexpr std::size_t kButtonDownOffset = 7;
inline constexpr std::size_t kButtonLeftOffset = 8;
inline constexpr std::size_t kButtonRightOffset = 9;

// One colour scheme of a highlight as 16 nibbles: selection colours, selection contrasts, action
// colours, action contrasts, each in the order emphasis 2, emphasis 1, pattern, background.
using ButtonColours = std::array<std::uint8_t, 16>;

// A menu button; the rectangle is in frame pixels and lines.
struct Button {
  std::uint8_t colourNumber = 0;  // 0: no highlight colours; 1 to 3 select an entry
  bool autoAction = false;
  std::uint16_t x = 0, y = 0;
  std::uint16_t width = 0, height = 0;                 // end - start; 0 when the end comes first
  std::uint8_t up = 0, down = 0, left = 0, right = 0;  // neighbours, from 1
  friend bool operator==(const Button&, const Button&) = default;
};

// The highlight information of a nav pack.
struct Highlight {
  std::array<ButtonColours, kButtonColourEntries> colours{};
  std::vector<Button> buttons;
  friend bool operator==(const Highlight&, const Highlight&) = default;
};

using SearchInfo = std::array<std::uint8_t, kNavSearchInfoSize>;

struct NavPack {
  std::uint32_t startTime = 0;  // VOBU start, 90 kHz
  std::uint32_t endTime = 0;    // VOBU end, 90 kHz
  Vcid vcid;
  int buttonCount = 0;  // 0 to 36
  bool interleaved = false;
  std::optional<Highlight> highlight;  // only when the pack defines a new one
};

// Reads a sector that ClassifyPack called a nav pack.
[[nodiscard]] NavPack ParseNavPack(SectorView sector);
[[nodiscard]] SearchInfo CopySearchInfo(SectorView sector);

}  // namespace quillomar
