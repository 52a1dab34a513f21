#include "support/memory_files.h"

#include <algorithm>
#include <set>

#include "base/paths.h"

namespace quillomar::test {

class MemoryFile final : public File {
 public:
  MemoryFile(const std::string& path, MemoryFileSystem& files,
             std::shared_ptr<MemoryFileSystem::Node> node, bool writable)
      : File(path), files_(files), node_(std::move(node)), writable_(writable) {}

  std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    const auto bad = node_->badByte;
    if (bad && *bad >= offset && *bad < offset + out.size()) return std::nullopt;
    if (offset >= node_->bytes.size()) return 0;
    const std::size_t count = std::min<std::size_t>(out.size(), node_->bytes.size() - offset);
    std::copy_n(node_->bytes.begin() + static_cast<std::ptrdiff_t>(offset), count, out.begin());
    return count;
  }

  Result WriteAt(std::uint64_t offset, ByteSpan bytes) override {
    if (!writable_ || !files_.TakeWrite()) return Result::kFailed;
    if (node_->bytes.size() < offset + bytes.size()) node_->bytes.resize(offset + bytes.size());
    std::copy(bytes.begin(), bytes.end(),
              node_->bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    node_->time = ++files_.clock_;
    return Result::kDone;
  }

  Result SetSize(std::uint64_t size) override {
    if (!writable_ || !files_.TakeWrite()) return Result::kFailed;
    node_->bytes.resize(size);
    return Result::kDone;
  }

  Result Sync() override { return Result::kDone; }
  std::uint64_t Size() override { return node_->bytes.size(); }

 private:
  MemoryFileSystem& files_;
  std::shared_ptr<MemoryFileSystem::Node> node_;
  bool writable_;
};

bool MemoryFileSystem::TakeWrite() {
  if (writesLeft_ == 0) return false;
  if (writesLeft_ > 0) --writesLeft_;
  ++writesDone_;
  return true;
}

std::unique_ptr<File> MemoryFileSystem::Open(const std::string& path, OpenMode mode) {
  const bool empties = mode == OpenMode::kCreate || mode == OpenMode::kCreateLocked;
  const bool creates = empties || mode == OpenMode::kCreateKeeping;
  auto found = nodes_.find(path);
  if (found == nodes_.end()) {
    if (!creates) return nullptr;
    Put(path, {});
    found = nodes_.find(path);
  }
  const bool writes = mode != OpenMode::kReadOnly;
  if (writes && found->second->readOnly) return nullptr;
  if (empties) found->second->bytes.clear();
  return std::make_unique<MemoryFile>(path, *this, found->second, writes);
}

bool MemoryFileSystem::Exists(const std::string& path) {
  return nodes_.count(path) > 0 || IsFolder(path);
}

bool MemoryFileSystem::IsFolder(const std::string& path) {
  const std::string prefix = path.empty() || path.back() == '/' ? path : path + "/";
  if (folders_.count(path) > 0) return true;
  const auto next = nodes_.lower_bound(prefix);
  return next != nodes_.end() && next->first.compare(0, prefix.size(), prefix) == 0;
}

std::optional<FileStamp> MemoryFileSystem::Stamp(const std::string& path) {
  const auto found = nodes_.find(path);
  if (found == nodes_.end()) return std::nullopt;
  const Node& node = *found->second;
  return FileStamp{node.serial, node.bytes.size(), node.time};
}

bool MemoryFileSystem::MayWrite(const std::string& path) {
  const auto found = nodes_.find(path);
  return found != nodes_.end() && !found->second->readOnly;
}

std::vector<std::string> MemoryFileSystem::List(const std::string& folder) {
  const std::string prefix = folder.empty() || folder.back() == '/' ? folder : folder + "/";
  std::set<std::string> names;
  for (const auto& [path, node] : nodes_) {
    if (path.compare(0, prefix.size(), prefix) != 0) continue;
    names.insert(path.substr(prefix.size(), path.find('/', prefix.size()) - prefix.size()));
  }
  return {names.begin(), names.end()};
}

Result MemoryFileSystem::CreateFolder(const std::string& path) {
  folders_[path] = true;
  return Result::kDone;
}

Result MemoryFileSystem::Remove(const std::string& path) {
  return nodes_.erase(path) > 0 ? Result::kDone : Result::kFailed;
}

Result MemoryFileSystem::Rename(const std::string& from, const std::string& to) {
  const auto found = nodes_.find(from);
  if (found == nodes_.end()) return Result::kFailed;
  const auto node = found->second;
  nodes_.erase(found);
  nodes_[to] = node;
  return Result::kDone;
}

void MemoryFileSystem::Put(const std::string& path, Bytes content) {
  auto node = std::make_shared<Node>();
  node->bytes = std::move(content);
  node->time = ++clock_;
  node->serial = static_cast<std::uint64_t>(clock_);
  nodes_[path] = std::move(node);
}

Bytes& MemoryFileSystem::Content(const std::string& path) {
  return nodes_.at(path)->bytes;
}

void MemoryFileSystem::FailReadsOf(const std::string& path, std::uint64_t offset) {
  nodes_.at(path)->badByte = offset;
}

void MemoryFileSystem::SetModificationTime(const std::string& path, std::int64_t time) {
  nodes_.at(path)->time = time;
}

}  // namespace quillomar::test
