#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "base/platform.h"

namespace quillomar::test {

// Holds up readers on other threads than the one that made it while it is closed.
class Gate {
 public:
  void Close() { Set(false); }
  void Open() { Set(true); }
  void Pass() {
    if (std::this_thread::get_id() == maker_) return;
    std::unique_lock lock(mutex_);
    opened_.wait(lock, [this] { return open_; });
  }

 private:
  void Set(bool open) {
    const std::lock_guard lock(mutex_);
    open_ = open;
    opened_.notify_all();
  }

  const std::thread::id maker_ = std::this_thread::get_id();
  std::mutex mutex_;
  std::condition_variable opened_;
  bool open_ = true;
};

// The disk, with reading through a gate. What is opened for reading only, as for the video, passes.
class GatedFileSystem final : public FileSystem {
 public:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
    auto file = disk_->Open(path, mode);
    if (mode == OpenMode::kReadOnly) return file;
    return file ? std::make_unique<GatedFile>(gate, std::move(file)) : nullptr;
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

  Gate gate;

 private:
  class GatedFile final : public File {
   public:
    GatedFile(Gate& gate, std::unique_ptr<File> file)
        : File(file->Path()), gate_(gate), file_(std::move(file)) {}
    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
      gate_.Pass();
      return file_->ReadAt(offset, out);
    }
    Result WriteAt(std::uint64_t offset, ByteSpan bytes) override {
      return file_->WriteAt(offset, bytes);
    }
    Result SetSize(std::uint64_t size) override { return file_->SetSize(size); }
    Result Sync() override { return file_->Sync(); }
    std::uint64_t Size() override { return file_->Size(); }

   private:
    Gate& gate_;
    std::unique_ptr<File> file_;
  };

  std::unique_ptr<FileSystem> disk_ = MakeDiskFileSystem();
};

}  // namespace quillomar::test
