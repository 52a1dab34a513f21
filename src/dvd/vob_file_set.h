#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/reporting.h"
#include "base/transaction.h"
#include "dvd/sector.h"

namespace quillomar {

inline constexpr int kMaxVobFiles = 10;

struct VobFile {
  std::string path;
  std::shared_ptr<File> file;  // null only after a failed ReopenAll
  std::uint32_t startLba = 0;  // LBA in set of the file's first sector
  std::uint32_t length = 0;    // whole sectors
};

struct SectorPlace {
  int fileIndex = -1;
  std::uint32_t lba = 0;  // LBA in file
};

// The VOB files of one domain, joined into one address space of sectors.
class VobFileSet {
 public:
  VobFileSet(FileSystem& files, Reporter& reporter) : files_(files), reporter_(reporter) {}

  // Closes everything; the set can be saved until a file turns out to be read-only.
  void Reset();
  // Opens for writing with other writers denied, else read-only with one message per set. Fails
  // when the file cannot be opened at all or the set is full.
  Result AddFile(const std::string& path);
  // Adds all pieces 1 to 9 that exist beside a piece above 0, else the one file. Fails when nothing
  // opened.
  Result OpenFullDomain(const std::string& path);
  // Sorts by path and trims to one domain of one title set, with a message for each kind of cut.
  void Validate();
  // Gives each file its place in the address space and finds out whether the title domain is whole:
  // pieces 1 to n without a gap, no piece n + 1 on disc, every file writable.
  void LayOut();

  [[nodiscard]] std::optional<SectorPlace> Locate(std::uint32_t lba) const;
  // Reads `count` sectors from an LBA in set on, across file ends. Fails outside the set.
  [[nodiscard]] Result ReadSectors(std::uint32_t lba, std::uint32_t count,
                                   std::span<std::uint8_t> out);
  // The same while a transaction runs, with its changes.
  [[nodiscard]] Result ReadSectors(WriteTransaction& transaction, std::uint32_t lba,
                                   std::uint32_t count, std::span<std::uint8_t> out);
  // Writes whole sectors from an LBA in set on, across file ends.
  [[nodiscard]] Result WriteSectors(WriteTransaction& transaction, std::uint32_t lba,
                                    ByteSpan sectors);
  // Closes and opens every file again, after something outside has changed them; read-only files
  // count as when they are added. Fails when one no longer opens; its sectors cannot be read then.
  Result ReopenAll();

  [[nodiscard]] const std::vector<VobFile>& Files() const { return entries_; }
  [[nodiscard]] bool Empty() const { return entries_.empty(); }
  [[nodiscard]] std::uint32_t TotalSectors() const;
  [[nodiscard]] bool CanSave() const { return canSave_; }
  // From now on nothing may be written, as if the files were read-only.
  void ForbidSaving() { canSave_ = fullTitleDomain_ = false; }
  [[nodiscard]] bool FullTitleDomain() const { return fullTitleDomain_; }
  void ClearFullTitleDomain() { fullTitleDomain_ = false; }
  [[nodiscard]] bool OpenedFromCache() const { return openedFromCache_; }
  void SetOpenedFromCache() { openedFromCache_ = true; }

 private:
  std::shared_ptr<File> OpenFile(const std::string& path);
  [[nodiscard]] bool IsWholeTitleDomain() const;
  // One stretch of sectors within a file.
  struct Stretch {
    const VobFile* vob;
    std::uint64_t offset;  // bytes in the file
    std::size_t begin;     // bytes in the caller's buffer
    std::size_t size;      // bytes
  };
  using Reader = std::function<std::optional<std::size_t>(File&, std::uint64_t offset,
                                                          std::span<std::uint8_t> out)>;
  [[nodiscard]] Result ReadWith(const Reader& read, std::uint32_t lba, std::uint32_t count,
                                std::span<std::uint8_t> out) const;
  // Cuts a run of sectors at the ends of the files; empty when part of it lies outside the set.
  [[nodiscard]] std::vector<Stretch> Cut(std::uint32_t lba, std::uint32_t count) const;

  FileSystem& files_;
  Reporter& reporter_;
  std::vector<VobFile> entries_;
  bool canSave_ = true;
  bool fullTitleDomain_ = false;
  bool openedFromCache_ = false;
};

// Title set of a folder with the most VOB sectors in its title domain (1 when none has any; the
// first of equals).
[[nodiscard]] int LargestTitleSet(FileSystem& files, const std::string& folder);

}  // namespace quillomar
