#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

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
  std::string language = "  ";  // two characters
  std::uint8_t modes = 0;       // DisplayMode bits
};

struct AudioStreamInfo {
  std::string coding;    // "AC3", "Mpeg1", "Mpeg2", "LPCM", "DTS" or "?"
  std::string language;  // two characters
  int channels = 0;
  int streamId = 0;  // MPEG stream id or sub-stream id
};

// The IFO of a domain as one image in memory, read and patched in place. Positions are byte offsets
// from the image's start. Reads outside the image report, set the error flag and give 0.
class IfoFile {
 public:
  IfoFile(FileSystem& files, Reporter& reporter) : files_(files), reporter_(reporter) {}

  // Opens for reading and writing, else for reading. Fails on an empty or missing file.
  Result Load(const std::string& path);
  [[nodiscard]] bool Loaded() const { return loaded_; }
  [[nodiscard]] bool IsManager() const { return isManager_; }
  // Whether Load could open the file for writing.
  [[nodiscard]] bool CanWrite() const { return canWrite_; }
  [[nodiscard]] const std::string& Path() const { return path_; }
  // Title set that the name stands for, 0 for the video manager.
  [[nodiscard]] int TableIndex() const { return tableIndex_; }
  [[nodiscard]] std::uint32_t SizeKib() const { return sizeKib_; }

  // Checked accessors: `base` + `offset` must lie inside the image, short of its last byte.
  [[nodiscard]] std::uint32_t GetInt(std::size_t base, std::size_t offset);
  [[nodiscard]] std::uint16_t GetShort(std::size_t base, std::size_t offset);
  void PutInt(std::size_t base, std::size_t offset, std::uint32_t value);
  void AddInt(std::size_t base, std::size_t offset, std::uint32_t delta);
  [[nodiscard]] bool Error() const { return error_; }
  // The whole image, for a rewrite that changes its tables.
  [[nodiscard]] std::span<std::uint8_t> Image() { return image_; }
  // Changes the size that is written, in KiB, within the 200 KiB of spare room.
  Result SetSizeKib(std::uint32_t size);

  // Start and end of a table by its code (0 to 14); nothing when the IFO has no such table.
  [[nodiscard]] std::optional<std::size_t> Table(int code);
  [[nodiscard]] std::optional<std::size_t> TableEnd(int code);

  // Menu language units; 0 when there is no menu.
  [[nodiscard]] int LanguageUnits();
  // Program chains of a menu language unit (from 1) or, with 0, of the title domain.
  [[nodiscard]] int ProgramChains(int languageUnit);
  // Position of a program chain, counted from 1; (0, 0) is the first-play chain.
  [[nodiscard]] std::optional<std::size_t> ProgramChain(int languageUnit, int number);
  [[nodiscard]] int Cells(std::size_t programChain);
  // Entries of a cell, counted from 1.
  [[nodiscard]] std::optional<std::size_t> CellPlayback(std::size_t programChain, int cell);
  [[nodiscard]] std::optional<std::size_t> CellPosition(std::size_t programChain, int cell);

  [[nodiscard]] std::optional<YCrCbClut> Clut(int languageUnit, int number);
  // Overwrites the entries that differ; the reserved bytes stay.
  Result SetClut(int languageUnit, int number, const YCrCbClut& clut);

  // `subStreamId` is 0x20 to 0x3F.
  [[nodiscard]] SubpictureStreamInfo SubpictureStream(int languageUnit, int number,
                                                      int subStreamId);
  // `logical` is 0 to 7; nothing when the chain does not have that stream.
  [[nodiscard]] std::optional<AudioStreamInfo> AudioStream(int languageUnit, int number,
                                                           int logical);
  // Video attributes byte of the title (or, for menus, the menu) domain.
  [[nodiscard]] std::uint8_t VideoAttributes(bool menu);

  // Writes the image into its file and the same bytes to the backup beside it.
  Result Write(WriteTransaction& transaction);
  // Writes the image to another path and its backup.
  Result WriteTo(WriteTransaction& transaction, const std::string& path);

 private:
  [[nodiscard]] bool Allowed(const char* operation, std::size_t base, std::size_t offset,
                             std::size_t width);
  void NormaliseTableEnds();

  FileSystem& files_;
  Reporter& reporter_;
  std::string path_;
  std::shared_ptr<File> file_;
  std::vector<std::uint8_t> image_;  // sizeKib_ + 200 KiB
  std::uint32_t sizeKib_ = 0;
  int tableIndex_ = 0;
  bool isManager_ = false;
  bool canWrite_ = false;
  bool loaded_ = false;
  bool error_ = false;
};

}  // namespace quillomar
