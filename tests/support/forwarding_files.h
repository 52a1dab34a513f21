#pragma once

#include <memory>

#include "base/platform.h"

namespace quillomar::test {

// The disk, for a file system that does some things otherwise.
class ForwardingFileSystem : public FileSystem {
 public:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
    return disk_->Open(path, mode);
  }
  bool Exists(const std::string& path) override { return disk_->Exists(path); }
  bool IsFolder(const std::string& path) override { return disk_->IsFolder(path); }
  std::optional<FileStamp> Stamp(const std::string& path) override { return disk_->Stamp(path); }
  std::string Canonical(const std::string& path) override { return disk_->Canonical(path); }
  bool MayWrite(const std::string& path) override { return disk_->MayWrite(path); }
  std::optional<std::uint64_t> FreeSpace(const std::string& folder) override {
    return disk_->FreeSpace(folder);
  }
  std::vector<std::string> List(const std::string& folder) override { return disk_->List(folder); }
  Result CreateFolder(const std::string& path) override { return disk_->CreateFolder(path); }
  Result Remove(const std::string& path) override { return disk_->Remove(path); }
  Result Rename(const std::string& from, const std::string& to) override {
    return disk_->Rename(from, to);
  }
  Result SyncFolder(const std::string& folder) override { return disk_->SyncFolder(folder); }

 private:
  std::unique_ptr<FileSystem> disk_ = MakeDiskFileSystem();
};

// One of its files.
class ForwardingFile : public File {
 public:
  explicit ForwardingFile(std::unique_ptr<File> file)
      : File(file->Path()), file_(std::move(file)) {}
  std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    return file_->ReadAt(offset, out);
  }
  Result WriteAt(std::uint64_t offset, ByteSpan bytes) override {
    return file_->WriteAt(offset, bytes);
  }
  Result SetSize(std::uint64_t size) override { return file_->SetSize(size); }
  Result Sync() override { return file_->Sync(); }
  std::uint64_t Size() override { return file_->Size(); }

 private:
  std::unique_ptr<File> file_;
};

}  // namespace quillomar::test
