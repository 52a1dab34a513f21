#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/file.h"
#include "base/reporting.h"
#include "base/transaction.h"
#include "dvd/clut.h"

namespace quillomar {

// Which display modes of a title use a subpicture stream.
enum DisplayMode : std::uint8_t {
  kMode4x3 = 1,
  kModeWide = 2,
  kModeLetterbox = 4,
  kModePanScan = 8,
};

struct SubpictureStreamInfo {
  bool found = false;
  std::string language = "  ";  // two bytes as found, a zero as a blank
  std::uint8_t modes = 0;       // DisplayMode bits
};

struct AudioStreamInfo {
  std::string coding;    // "AC3", "Mpeg1", "Mpeg2", "LPCM", "DTS" or "?"
  std::string language;  // two bytes as found, a zero as a blank
  int channels = 0;
  int streamId = 0;  // MPEG stream id or sub-stream id
};

// The tables an IFO may hold; each belongs to the manager, to title sets, or to both.
enum class IfoTable {
  kImage = 0,        // the file itself
  kMenuUnits = 1,    // menu language units, by either kind's own pointer
  kMenuCells = 2,    // menu cell addresses
  kMenuVobus = 3,    // menu VOBU address map
  kTitleSearch = 4,  // manager
  kFirstPlay = 5,    // manager: the first-play program chain
  kTitleCells = 6,   // title set: cell addresses
  kTitleChains = 7,  // title set: program chains
  kTitleVobus = 8,   // title set: VOBU address map
  kTimeMap = 9,      // title set
  kManagerMenuUnits = 10,
  kPartOfTitle = 11,         // title set
  kTextData = 12,            // manager
  kParental = 13,            // manager
  kTitleSetAttributes = 14,  // manager
};

// The IFO of a domain as one image in memory, read and patched in place. Positions are byte offsets
// from the image's start. Numbers found in the file are trusted nowhere: a chain, cell or table
// that would lie outside the file is absent.
class IfoFile {
 public:
  IfoFile(FileSystem& files, Reporter& reporter) : files_(files), reporter_(reporter) {}

  // Opens for reading and writing, else for reading; letter case of the name does not matter. Takes
  // whole KiB. Fails, and leaves nothing loaded, on a file that is missing, cannot be read, or is
  // smaller than 1 KiB or larger than 64 MiB.
  Result Load(const std::string& path);
  // Forgets the image and closes the file.
  void Close();
  [[nodiscard]] bool Loaded() const { return loaded_; }
  [[nodiscard]] bool IsManager() const { return isManager_; }
  // Whether Load could open the file for writing.
  [[nodiscard]] bool CanWrite() const { return canWrite_; }
  [[nodiscard]] const std::string& Path() const { return path_; }
  // Title set that the name stands for, 0 for the video manager. A name that stands for none leaves
  // the index of the file loaded before.
  [[nodiscard]] int TableIndex() const { return tableIndex_; }
  [[nodiscard]] std::uint32_t SizeKib() const { return sizeKib_; }

  // Checked accessors: the field at `base` + `offset` must end before the image's last byte. A
  // rejected access is logged, sets the error flag, reads 0 and writes nothing.
  [[nodiscard]] std::uint32_t GetInt(std::size_t base, std::size_t offset);
  [[nodiscard]] std::uint16_t GetShort(std::size_t base, std::size_t offset);
  void PutInt(std::size_t base, std::size_t offset, std::uint32_t value);
  void AddInt(std::size_t base, std::size_t offset, std::uint32_t delta);
  // Set by the first rejected access after a load.
  [[nodiscard]] bool Error() const { return error_; }
  // The whole image with its spare room, for a rewrite that changes its tables.
  [[nodiscard]] std::span<std::uint8_t> Image() { return image_; }
  // Changes the size that is written, in KiB; fails for 0 and beyond the 200 KiB of spare room.
  Result SetSizeKib(std::uint32_t size);

  // Position of a table and of its last byte; nothing when the IFO has no such table inside the
  // file.
  [[nodiscard]] std::optional<std::size_t> Table(IfoTable table);
  [[nodiscard]] std::optional<std::size_t> TableEnd(IfoTable table);

  // Menu language units; 0 when there is no menu.
  [[nodiscard]] int LanguageUnits();
  // Program chains of a menu language unit (from 1) or, with 0, of the title domain; the manager's
  // title domain is its first-play chain.
  [[nodiscard]] int ProgramChains(int languageUnit);
  // Position of a program chain, counted from 1; (0, 0) is the manager's first-play chain.
  [[nodiscard]] std::optional<std::size_t> ProgramChain(int languageUnit, int number);
  [[nodiscard]] int Cells(std::size_t programChain);
  // Entries of a cell, counted from 1.
  [[nodiscard]] std::optional<std::size_t> CellPlayback(std::size_t programChain, int cell);
  [[nodiscard]] std::optional<std::size_t> CellPosition(std::size_t programChain, int cell);

  [[nodiscard]] std::optional<YCrCbClut> Clut(int languageUnit, int number);
  // Overwrites the entries that differ; the reserved bytes stay. Fails, changing nothing, where the
  // chain would not be found afterwards.
  Result SetClut(int languageUnit, int number, const YCrCbClut& clut);

  // `subStreamId` is 0x20 to 0x3F.
  [[nodiscard]] SubpictureStreamInfo SubpictureStream(int languageUnit, int number,
                                                      int subStreamId);
  // `logical` is 0 to 7; nothing when the chain does not have that stream.
  [[nodiscard]] std::optional<AudioStreamInfo> AudioStream(int languageUnit, int number,
                                                           int logical);
  // Video attributes byte of the title (or, for menus and the manager, the menu) domain.
  [[nodiscard]] std::uint8_t VideoAttributes(bool menu) const;

  // Writes the image into its file and the same bytes to the backup beside it, which is created
  // when missing. Fails when the file was opened read-only.
  Result Write(WriteTransaction& transaction);
  // Writes the image to another path and to the backup beside that.
  Result WriteTo(WriteTransaction& transaction, const std::string& path);

 private:
  [[nodiscard]] std::size_t Size() const { return std::size_t{sizeKib_} * 1024; }
  [[nodiscard]] ByteSpan Contents() const { return ByteSpan(image_).first(Size()); }
  [[nodiscard]] bool Contains(std::size_t position, std::size_t size) const;
  [[nodiscard]] bool Allowed(const char* operation, std::size_t base, std::size_t offset,
                             std::size_t width);
  // `position` when all of a structure lies in the file; else it is reported as a rejected read.
  [[nodiscard]] std::optional<std::size_t> IfWhole(std::size_t position, std::size_t size);
  Result OpenAndRead(const std::string& path);
  void NormaliseTableEnds();
  void NormaliseTableEnd(IfoTable table);

  // Table of search pointers to the program chains of a unit.
  [[nodiscard]] std::optional<std::size_t> ChainTable(int languageUnit);
  [[nodiscard]] int SearchCount(std::size_t table);
  [[nodiscard]] YCrCbClut ColoursAt(std::size_t chain) const;
  void PutColours(std::size_t chain, const YCrCbClut& clut);
  [[nodiscard]] std::optional<std::size_t> SearchTarget(std::size_t table, int number);
  [[nodiscard]] std::optional<std::size_t> CellEntry(std::size_t programChain, int cell,
                                                     std::size_t tableField, std::size_t entrySize);
  [[nodiscard]] std::string SubpictureLanguage(bool menu, int logical) const;
  [[nodiscard]] std::string Language(std::size_t position) const;

  Result WriteImage(WriteTransaction& transaction, const std::shared_ptr<File>& file) const;
  Result WriteWithBackup(WriteTransaction& transaction, const std::shared_ptr<File>& file,
                         const std::string& path) const;

  FileSystem& files_;
  Reporter& reporter_;
  std::string path_;
  std::shared_ptr<File> file_;
  std::vector<std::uint8_t> image_;  // capacity: size at load + 200 KiB
  std::uint32_t sizeKib_ = 0;
  int tableIndex_ = 0;
  bool isManager_ = false;
  bool canWrite_ = false;
  bool loaded_ = false;
  bool error_ = false;
};

}  // namespace quillomar
