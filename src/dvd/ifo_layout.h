#pragma once

#include <cstddef>
#include <cstdint>

// IFO file of a DVD-Video domain: a header with the attributes of its streams and the start sectors
// of its tables (relative to the IFO), then the tables themselves. All numbers are big-endian;
// offsets are bytes from the start of the structure named.
namespace quillomar {

inline constexpr std::size_t kKib = 1024;

// Header.
inline constexpr std::size_t kIfoEndSectorOffset = 28;           // u32, last sector of the IFO
inline constexpr std::size_t kIfoFirstPlayOffset = 132;          // u32, bytes, not sectors
inline constexpr std::size_t kIfoTitleSearchOffset = 196;        // u32, manager
inline constexpr std::size_t kIfoMenuUnitsOffset = 200;          // u32, manager
inline constexpr std::size_t kIfoPartOfTitleOffset = 200;        // u32, title set
inline constexpr std::size_t kIfoParentalOffset = 204;           // u32, manager
inline constexpr std::size_t kIfoTitleChainsOffset = 204;        // u32, title set
inline constexpr std::size_t kIfoAttributesOffset = 208;         // u32, manager
inline constexpr std::size_t kIfoTitleSetMenuUnitsOffset = 208;  // u32, title set
inline constexpr std::size_t kIfoTextDataOffset = 212;           // u32, manager
inline constexpr std::size_t kIfoTimeMapOffset = 212;            // u32, title set
inline constexpr std::size_t kIfoMenuCellsOffset = 216;          // u32
inline constexpr std::size_t kIfoMenuVobusOffset = 220;          // u32
inline constexpr std::size_t kIfoTitleCellsOffset = 224;         // u32, title set
inline constexpr std::size_t kIfoTitleVobusOffset = 228;         // u32, title set

// Stream attributes in the header, of the menu domain and of the title domain.
inline constexpr std::size_t kMenuVideoOffset = 256;             // u8
inline constexpr std::size_t kMenuAudioOffset = 260;             // entries of 8 bytes
inline constexpr std::size_t kMenuSubpictureCountOffset = 340;   // u16, at most 1
inline constexpr std::size_t kMenuSubpictureOffset = 342;        // one entry of 6 bytes
inline constexpr std::size_t kTitleVideoOffset = 512;            // u8
inline constexpr std::size_t kTitleAudioOffset = 516;            // entries of 8 bytes
inline constexpr std::size_t kTitleSubpictureCountOffset = 596;  // u16
inline constexpr std::size_t kTitleSubpictureOffset = 598;       // entries of 6 bytes

inline constexpr std::size_t kAudioAttributesSize = 8;
inline constexpr std::size_t kAudioCodingOffset = 0;    // u8, coding in bits 5 to 7
inline constexpr std::size_t kAudioChannelsOffset = 1;  // u8, channels - 1 in bits 0 to 2
inline constexpr std::size_t kAudioLanguageOffset = 2;  // 2 letters

inline constexpr std::size_t kSubpictureAttributesSize = 6;
inline constexpr std::size_t kSubpictureLanguageOffset = 2;  // 2 letters

// Search pointers of language units and of program chains: a table starts with a 16-bit count, its
// last byte stands at +4, entry n (from 1) at 8 x n holds the target's offset in the table.
inline constexpr std::size_t kSearchCountOffset = 0;  // u16
inline constexpr std::size_t kSearchEntrySize = 8;
inline constexpr std::size_t kSearchTargetOffset = 4;  // u32, in the entry

// Where a table tells its last byte, counted from the table's start.
inline constexpr std::size_t kTableEndOffset = 4;      // u32, most tables
inline constexpr std::size_t kVobuMapEndOffset = 0;    // u32, VOBU address maps
inline constexpr std::size_t kTextDataEndOffset = 16;  // u32
inline constexpr std::uint32_t kTableEndMask = 0x00FFFFFF;

// Program chain.
inline constexpr std::size_t kPgcCellCountOffset = 3;    // u8
inline constexpr std::size_t kPgcAudioOffset = 12;       // 8 stream controls, u16
inline constexpr std::size_t kPgcSubpictureOffset = 28;  // 32 stream controls, u32
inline constexpr std::size_t kPgcClutOffset = 164;       // 16 entries: reserved, Y, Cr, Cb
inline constexpr std::size_t kPgcCommandsOffset = 228;   // u16, 0 = no command table
inline constexpr std::size_t kPgcPlaybackOffset = 232;   // u16, cell playback table
inline constexpr std::size_t kPgcPositionsOffset = 234;  // u16, cell position table
inline constexpr std::size_t kPgcSize = 236;             // without its tables
inline constexpr std::size_t kCommandsEndOffset = 6;     // u16, in the command table
inline constexpr std::size_t kClutEntrySize = 4;

inline constexpr std::uint16_t kPgcAudioAvailable = 0x8000;  // physical stream in bits 8 to 10
inline constexpr std::uint32_t kPgcSubpictureAvailable = 0x80000000;

// Cell playback entry; sectors count from the domain's first VOB sector.
inline constexpr std::size_t kCellPlaybackSize = 24;
inline constexpr std::size_t kCellFirstVobuOffset = 8;      // u32
inline constexpr std::size_t kCellFirstIlvuEndOffset = 12;  // u32
inline constexpr std::size_t kCellLastVobuOffset = 16;      // u32
inline constexpr std::size_t kCellLastVobuEndOffset = 20;   // u32

// Cell position entry.
inline constexpr std::size_t kCellPositionSize = 4;
inline constexpr std::size_t kCellVobIdOffset = 0;  // u16
inline constexpr std::size_t kCellIdOffset = 3;     // u8

// VOBU address map: after the end address, one u32 start sector for each VOBU.
inline constexpr std::size_t kVobuMapEntriesOffset = 4;

// Cell address table: entries of 12 bytes, one for each cell of the multiplex.
inline constexpr std::size_t kCellAddressesOffset = 8;
inline constexpr std::size_t kCellAddressSize = 12;
inline constexpr std::size_t kCellAddressStartOffset = 4;  // u32, in the entry: first sector
inline constexpr std::size_t kCellAddressEndOffset = 8;    // u32, in the entry: last sector

// Time map table: the number of maps, then their offsets in the table. A map holds the start sector
// of the VOBU shown at each multiple of its time unit; bit 31 is a flag.
inline constexpr std::size_t kTimeMapCountOffset = 0;    // u16
inline constexpr std::size_t kTimeMapOffsetsOffset = 8;  // u32 each
inline constexpr std::size_t kMapEntryCountOffset = 2;   // u16, in a map
inline constexpr std::size_t kMapEntriesOffset = 4;      // u32 each, in a map
inline constexpr std::uint32_t kMapEntryFlag = 0x80000000;

// Video attributes byte.
inline constexpr int kAspectShift = 2;      // 2 bits: 0 = 4:3, 3 = 16:9
inline constexpr int kDisplayModeMask = 3;  // 1 = pan-scan only, 2 = letterbox only

}  // namespace quillomar
