#include "support/crash_files.h"

#include <algorithm>

#include "base/checksum.h"
#include "base/paths.h"

namespace quillomar::test {
namespace {

constexpr std::size_t kTornUnit = 512;

std::string FolderOf(const std::string& path) {
  std::string folder = SplitPath(path).folder;
  if (folder.size() > 1) folder.pop_back();
  return folder;
}

}  // namespace

class CrashFile final : public File {
 public:
  CrashFile(const std::string& path, CrashFileSystem& files,
            std::shared_ptr<CrashFileSystem::Node> node, bool writable, bool locks)
      : File(path), files_(files), node_(std::move(node)), writable_(writable), locks_(locks) {
    if (locks_) node_->locked = true;
  }
  ~CrashFile() override {
    if (locks_) node_->locked = false;
  }

  std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    if (offset >= node_->now.size()) return 0;
    const std::size_t count = std::min<std::size_t>(out.size(), node_->now.size() - offset);
    std::copy_n(node_->now.begin() + static_cast<std::ptrdiff_t>(offset), count, out.begin());
    return count;
  }

  Result WriteAt(std::uint64_t offset, ByteSpan bytes) override {
    return Change({offset, {bytes.begin(), bytes.end()}, false},
                  offset + bytes.size() > node_->peak);
  }

  Result SetSize(std::uint64_t size) override {
    return Change({size, {}, true}, size > node_->peak);
  }

  Result Sync() override {
    if (files_.Take(false) != CrashFileSystem::Outcome::kWhole) return Result::kFailed;
    node_->synced = node_->now;
    node_->changes.clear();
    return Result::kDone;
  }

  std::uint64_t Size() override { return node_->now.size(); }

 private:
  Result Change(CrashFileSystem::Change change, bool grows) {
    if (!writable_) return Result::kFailed;
    const bool wasAlive = !files_.dead_;
    const auto outcome = files_.Take(grows);
    if (outcome == CrashFileSystem::Outcome::kHalf) change.bytes.resize(change.bytes.size() / 2);
    const bool killedHere = wasAlive && files_.dead_;  // it may have been on its way
    if (outcome == CrashFileSystem::Outcome::kFails && !killedHere) return Result::kFailed;
    CrashFileSystem::Apply(node_->now, change);
    node_->changes.push_back(std::move(change));
    node_->peak = std::max<std::uint64_t>(node_->peak, node_->now.size());
    return outcome == CrashFileSystem::Outcome::kWhole ? Result::kDone : Result::kFailed;
  }

  CrashFileSystem& files_;
  std::shared_ptr<CrashFileSystem::Node> node_;
  bool writable_;
  bool locks_;
};

CrashFileSystem::CrashFileSystem(const DeviceState& state) {
  for (const auto& [path, content] : state) {
    auto node = std::make_shared<Node>();
    node->synced = node->now = content;
    node->peak = content.size();
    names_[path] = std::move(node);
  }
}

CrashFileSystem::Outcome CrashFileSystem::Take(bool grows) {
  const bool now = operations_++ == failing_;
  if (now && (fault_ == Fault::kKilled || fault_ == Fault::kDeadDisk)) dead_ = true;
  if (now && fault_ == Fault::kFull) full_ = true;
  if (dead_ || (full_ && grows)) return Outcome::kFails;
  if (now && fault_ == Fault::kError) return Outcome::kFails;
  return now && fault_ == Fault::kShortWrite ? Outcome::kHalf : Outcome::kWhole;
}

void CrashFileSystem::Apply(Bytes& content, const Change& change) {
  if (change.isSize) {
    content.resize(change.offset);
    return;
  }
  content.resize(std::max<std::size_t>(content.size(), change.offset + change.bytes.size()));
  std::copy(change.bytes.begin(), change.bytes.end(),
            content.begin() + static_cast<std::ptrdiff_t>(change.offset));
}

Bytes CrashFileSystem::Mixed(const Node& node, std::mt19937& random) {
  std::vector<Change> parts;
  for (const Change& change : node.changes) {
    if (change.isSize) parts.push_back(change);
    for (std::size_t at = 0; at < change.bytes.size();) {
      const std::uint64_t place = change.offset + at;
      const std::size_t size =
          std::min<std::size_t>(kTornUnit - place % kTornUnit, change.bytes.size() - at);
      const auto begin = change.bytes.begin() + static_cast<std::ptrdiff_t>(at);
      parts.push_back({place, {begin, begin + static_cast<std::ptrdiff_t>(size)}, false});
      at += size;
    }
  }
  std::shuffle(parts.begin(), parts.end(), random);
  parts.resize(random() % (parts.size() + 1));
  Bytes content = node.synced;
  for (const Change& part : parts) Apply(content, part);
  return content;
}

DeviceState CrashFileSystem::Now() const {
  DeviceState state;
  for (const auto& [path, node] : names_) state[path] = node->now;
  return state;
}

DeviceState CrashFileSystem::AfterCrash(Unsynced unsynced, std::uint32_t seed) const {
  std::mt19937 random(seed);
  Names names = names_;
  for (const auto& [folder, moments] : history_) {
    std::size_t moment = 0;
    if (unsynced == Unsynced::kKept) moment = moments.size() - 1;
    if (unsynced == Unsynced::kMixed) moment = random() % moments.size();
    std::erase_if(names, [&](const auto& entry) { return FolderOf(entry.first) == folder; });
    for (const auto& entry : moments[moment]) names.insert(entry);
  }
  DeviceState state;
  for (const auto& [path, node] : names) {
    switch (unsynced) {
      case Unsynced::kLost:
        state[path] = node->synced;
        break;
      case Unsynced::kKept:
        state[path] = node->now;
        break;
      case Unsynced::kMixed:
        state[path] = Mixed(*node, random);
        break;
    }
  }
  return state;
}

std::unique_ptr<File> CrashFileSystem::Open(const std::string& path, OpenMode mode) {
  const bool locks = mode == OpenMode::kExclusiveWrite || mode == OpenMode::kCreateLocked;
  const bool empties = mode == OpenMode::kCreate || mode == OpenMode::kCreateLocked;
  auto found = names_.find(path);
  if (found == names_.end()) {
    if (!empties && mode != OpenMode::kCreateKeeping) return nullptr;
    Names names = names_;
    auto node = std::make_shared<Node>();
    names[path] = node;
    if (Take(true) != Outcome::kWhole || Failed(ChangeNames(std::move(names)))) return nullptr;
    found = names_.find(path);
  }
  if (locks && found->second->locked) return nullptr;
  auto file =
      std::make_unique<CrashFile>(path, *this, found->second, mode != OpenMode::kReadOnly, locks);
  if (empties && file->Size() > 0 && Failed(file->SetSize(0))) return nullptr;
  return file;
}

Result CrashFileSystem::ChangeNames(Names names) {
  const auto inFolder = [](const Names& all, const std::string& folder) {
    Names part;
    for (const auto& entry : all) {
      if (FolderOf(entry.first) == folder) part.insert(entry);
    }
    return part;
  };
  std::map<std::string, bool> folders;
  for (const auto& entry : names) folders[FolderOf(entry.first)] = true;
  for (const auto& entry : names_) folders[FolderOf(entry.first)] = true;
  for (const auto& [folder, known] : folders) {
    const Names before = inFolder(names_, folder);
    const Names after = inFolder(names, folder);
    if (before == after) continue;
    auto& moments = history_[folder];
    if (moments.empty()) moments.push_back(before);
    moments.push_back(after);
  }
  names_ = std::move(names);
  return Result::kDone;
}

bool CrashFileSystem::Exists(const std::string& path) {
  return names_.count(path) > 0 || IsFolder(path);
}

bool CrashFileSystem::IsFolder(const std::string& path) {
  return std::any_of(names_.begin(), names_.end(),
                     [&](const auto& entry) { return FolderOf(entry.first) == path; });
}

std::optional<FileStamp> CrashFileSystem::Stamp(const std::string& path) {
  const auto found = names_.find(path);
  if (found == names_.end()) return std::nullopt;
  // From the content, so that it lasts from one run to the next.
  const Bytes& content = found->second->now;
  return FileStamp{0, content.size(), static_cast<std::int64_t>(Checksum(content))};
}

std::vector<std::string> CrashFileSystem::List(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& [path, node] : names_) {
    if (FolderOf(path) == folder)
      names.push_back(SplitPath(path).title + SplitPath(path).extension);
  }
  return names;
}

Result CrashFileSystem::Remove(const std::string& path) {
  if (names_.count(path) == 0 || Take(false) != Outcome::kWhole) return Result::kFailed;
  Names names = names_;
  names.erase(path);
  return ChangeNames(std::move(names));
}

Result CrashFileSystem::Rename(const std::string& from, const std::string& to) {
  if (names_.count(from) == 0 || Take(false) != Outcome::kWhole) return Result::kFailed;
  Names names = names_;
  names[to] = names.at(from);
  names.erase(from);
  return ChangeNames(std::move(names));
}

Result CrashFileSystem::SyncFolder(const std::string& folder) {
  if (Take(false) != Outcome::kWhole) return Result::kFailed;
  const bool slash = folder.size() > 1 && folder.back() == '/';
  history_.erase(slash ? folder.substr(0, folder.size() - 1) : folder);
  return Result::kDone;
}

}  // namespace quillomar::test
