#pragma once

#include <map>
#include <memory>
#include <string>

#include "base/file.h"

namespace quillomar::test {

// A file system in memory. Files opened twice share their bytes. Folders exist as soon as a file or
// CreateFolder names them.
class MemoryFileSystem : public FileSystem {
 public:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override;
  bool Exists(const std::string& path) override;
  bool IsFolder(const std::string& path) override;
  std::optional<FileStamp> Stamp(const std::string& path) override;
  std::string Canonical(const std::string& path) override { return path; }
  bool MayWrite(const std::string& path) override;
  std::optional<std::uint64_t> FreeSpace(const std::string&) override { return freeSpace_; }
  std::vector<std::string> List(const std::string& folder) override;
  Result CreateFolder(const std::string& path) override;
  Result Remove(const std::string& path) override;
  Result Rename(const std::string& from, const std::string& to) override;
  Result SyncFolder(const std::string&) override { return Result::kDone; }

  void Put(const std::string& path, Bytes content);
  // Content of a file that must exist.
  Bytes& Content(const std::string& path);
  void SetReadOnly(const std::string& path, bool readOnly = true) {
    nodes_.at(path)->readOnly = readOnly;
  }
  // Reads that touch this byte fail.
  void FailReadsOf(const std::string& path, std::uint64_t offset);
  void SetFreeSpace(std::uint64_t bytes) { freeSpace_ = bytes; }
  void SetModificationTime(const std::string& path, std::int64_t time);

  // From now on the n-th write from here (0 = the next one) and all later ones fail; -1: none does.
  void FailWritesFrom(int count) { writesLeft_ = count; }
  [[nodiscard]] int WritesDone() const { return writesDone_; }

 private:
  friend class MemoryFile;
  struct Node {
    Bytes bytes;
    std::uint64_t serial = 0;
    std::int64_t time = 0;
    bool readOnly = false;
    std::optional<std::uint64_t> badByte;
  };
  bool TakeWrite();

  std::map<std::string, std::shared_ptr<Node>> nodes_;
  std::map<std::string, bool> folders_;
  std::uint64_t freeSpace_ = std::uint64_t{1} << 40;
  std::int64_t clock_ = 1;
  int writesLeft_ = -1;
  int writesDone_ = 0;
};

}  // namespace quillomar::test
