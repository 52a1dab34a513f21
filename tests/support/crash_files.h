#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/file.h"

namespace quillomar::test {

// What a device holds: content by path.
using DeviceState = std::map<std::string, Bytes>;

// A file system in memory that knows what has reached the device: content by a sync of the file,
// names by a sync of the folder. Every operation that changes or syncs something is counted, from
// 0, and one of them can go wrong.
class CrashFileSystem final : public FileSystem {
 public:
  enum class Fault {
    kKilled,      // the machine stops in the middle of it: nothing happens from then on
    kError,       // it fails without an effect
    kShortWrite,  // the first half of a write arrives, then it fails
    kFull,        // from it on, nothing can be created or grow beyond what it once was
    kDeadDisk,    // it and all later ones fail
  };
  // What becomes of what was not synced when the machine stops.
  enum class Unsynced { kLost, kKept, kMixed };

  explicit CrashFileSystem(const DeviceState& state);

  void FailAt(int operation, Fault fault) {
    failing_ = operation;
    fault_ = fault;
  }
  [[nodiscard]] int Operations() const { return operations_; }
  // All files as a running program sees them.
  [[nodiscard]] DeviceState Now() const;
  // What is found after the machine has stopped. kMixed: names up to some moment; of the writes to
  // a file any, in any order, each sector of 512 bytes by itself.
  [[nodiscard]] DeviceState AfterCrash(Unsynced unsynced, std::uint32_t seed) const;

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override;
  bool Exists(const std::string& path) override;
  bool IsFolder(const std::string& path) override;
  std::optional<FileStamp> Stamp(const std::string& path) override;
  std::string Canonical(const std::string& path) override { return path; }
  bool MayWrite(const std::string& path) override { return Exists(path); }
  std::optional<std::uint64_t> FreeSpace(const std::string&) override { return std::nullopt; }
  std::vector<std::string> List(const std::string& folder) override;
  Result CreateFolder(const std::string&) override { return Result::kDone; }
  Result Remove(const std::string& path) override;
  Result Rename(const std::string& from, const std::string& to) override;
  Result SyncFolder(const std::string& folder) override;

 private:
  friend class CrashFile;
  struct Change {
    std::uint64_t offset = 0;  // or the new size
    Bytes bytes;
    bool isSize = false;
  };
  struct Node {
    Bytes synced;
    Bytes now;
    std::vector<Change> changes;  // since the last sync
    std::uint64_t peak = 0;       // largest size
    bool locked = false;
  };
  using Names = std::map<std::string, std::shared_ptr<Node>>;

  // Whether an operation happens, wholly (1), in half (0.5) or not.
  enum class Outcome { kWhole, kHalf, kFails };
  [[nodiscard]] Outcome Take(bool grows);
  Result ChangeNames(Names names);
  static void Apply(Bytes& content, const Change& change);
  static Bytes Mixed(const Node& node, std::mt19937& random);

  Names names_;
  // The names of each folder as they were after the last sync and after every change since.
  std::map<std::string, std::vector<Names>> history_;
  int operations_ = 0;
  int failing_ = -1;
  Fault fault_ = Fault::kError;
  bool dead_ = false;
  bool full_ = false;
};

}  // namespace quillomar::test
