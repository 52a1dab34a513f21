#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"

namespace quillomar {

using Bytes = std::vector<std::uint8_t>;
using ByteSpan = std::span<const std::uint8_t>;

enum class OpenMode {
  kReadOnly,        // the file must exist; nothing is denied to others
  kReadWrite,       // the file must exist; nothing is denied to others
  kExclusiveWrite,  // as kReadWrite, other writers that ask for the same are denied
  kCreate,          // created, or truncated to nothing
  kCreateLocked,    // created, or emptied once no other writer that asks for the same has it
  kCreateKeeping,   // created when missing, else opened with its content kept
};

// An open file, addressed by 64-bit byte offsets. Several threads may call ReadAt at once; all else
// is not for use by two threads at once.
class File {
 public:
  virtual ~File() = default;
  // As it was opened.
  [[nodiscard]] const std::string& Path() const { return path_; }
  // Reads up to out.size() bytes; returns how many arrived (fewer only at the end of the file), or
  // nothing on an I/O error.
  [[nodiscard]] virtual std::optional<std::size_t> ReadAt(std::uint64_t offset,
                                                          std::span<std::uint8_t> out) = 0;
  // Writes all bytes or fails; a write past the end extends the file.
  [[nodiscard]] virtual Result WriteAt(std::uint64_t offset, ByteSpan bytes) = 0;
  [[nodiscard]] virtual Result SetSize(std::uint64_t size) = 0;
  // Returns once everything written has reached the device.
  [[nodiscard]] virtual Result Sync() = 0;
  // Current size in bytes; 0 when it cannot be told.
  [[nodiscard]] virtual std::uint64_t Size() = 0;

 protected:
  explicit File(std::string path) : path_(std::move(path)) {}

 private:
  std::string path_;
};

// What tells a file from another one that stands under the same path later.
struct FileStamp {
  std::uint64_t serial = 0;   // of the file on its device
  std::uint64_t size = 0;     // bytes
  std::int64_t modified = 0;  // nanoseconds since the Unix epoch

  bool operator==(const FileStamp&) const = default;
};

// Everything the core asks of the file system; paths are UTF-8.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  // Returns nothing when the file cannot be opened in that mode.
  [[nodiscard]] virtual std::unique_ptr<File> Open(const std::string& path, OpenMode mode) = 0;
  [[nodiscard]] virtual bool Exists(const std::string& path) = 0;
  [[nodiscard]] virtual bool IsFolder(const std::string& path) = 0;
  // Nothing when there is no such file.
  [[nodiscard]] virtual std::optional<FileStamp> Stamp(const std::string& path) = 0;
  // The one path among those that lead to a file; `path` itself where that cannot be told.
  [[nodiscard]] virtual std::string Canonical(const std::string& path) = 0;
  // Whether the device and the rights let an existing file be written.
  [[nodiscard]] virtual bool MayWrite(const std::string& path) = 0;
  // Bytes that the device of a folder has left for this user; nothing when it cannot be told.
  [[nodiscard]] virtual std::optional<std::uint64_t> FreeSpace(const std::string& folder) = 0;
  // Names (not paths) of the entries of a folder, sorted by bytes; empty when it cannot be read.
  [[nodiscard]] virtual std::vector<std::string> List(const std::string& folder) = 0;
  // Creates one folder (its parent must exist); an existing one counts as done.
  virtual Result CreateFolder(const std::string& path) = 0;
  virtual Result Remove(const std::string& path) = 0;
  // Replaces an existing target in one step.
  virtual Result Rename(const std::string& from, const std::string& to) = 0;
  // Returns once the folder's names (created, renamed, removed) have reached the device.
  virtual Result SyncFolder(const std::string& folder) = 0;

  // Modification time in nanoseconds since the Unix epoch; nothing when there is no such file.
  [[nodiscard]] std::optional<std::int64_t> ModificationTime(const std::string& path) {
    const auto stamp = Stamp(path);
    return stamp ? std::optional(stamp->modified) : std::nullopt;
  }
};

// The file as the disk spells it: `path` itself when it exists, else a file of the same folder
// whose name differs in letter case only, else `path` unchanged.
std::string FindIgnoringCase(FileSystem& files, const std::string& path);

// Whole content of a file; nothing when it cannot be opened or read, or is larger than `limit`
// bytes.
std::optional<Bytes> ReadWholeFile(FileSystem& files, const std::string& path, std::uint64_t limit);

}  // namespace quillomar
