// killed_cli N COMMAND [OPTION...] FILE...
//
// The command-line program on the real disk; before its N-th write, sync or change of a name (from
// 0) it is killed as SIGKILL does it, in the middle of it where that is a write. With N beyond the
// last one it runs to its end. The last line on standard output says how many there were.

#include <csignal>
#include <cstdlib>
#include <iostream>

#include "base/platform.h"
#include "cli/cli.h"

namespace quillomar::test {
namespace {

class Countdown {
 public:
  explicit Countdown(int left) : left_(left) {}
  // Whether this operation is the last one.
  bool Take() {
    ++count_;
    return left_-- == 0;
  }
  [[nodiscard]] int Count() const { return count_; }
  [[noreturn]] static void Kill() {
    (void)std::raise(SIGKILL);
    std::abort();
  }
  void KillIfLast() {
    if (Take()) Kill();
  }

 private:
  int left_;
  int count_ = 0;
};

class KilledFile final : public File {
 public:
  KilledFile(std::unique_ptr<File> file, Countdown& countdown)
      : File(file->Path()), file_(std::move(file)), countdown_(countdown) {}
  std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    return file_->ReadAt(offset, out);
  }
  Result WriteAt(std::uint64_t offset, ByteSpan bytes) override {
    if (countdown_.Take()) {
      (void)file_->WriteAt(offset, bytes.first(bytes.size() / 2));
      Countdown::Kill();
    }
    return file_->WriteAt(offset, bytes);
  }
  Result SetSize(std::uint64_t size) override {
    countdown_.KillIfLast();
    return file_->SetSize(size);
  }
  Result Sync() override {
    countdown_.KillIfLast();
    return file_->Sync();
  }
  std::uint64_t Size() override { return file_->Size(); }

 private:
  std::unique_ptr<File> file_;
  Countdown& countdown_;
};

class KilledFileSystem final : public FileSystem {
 public:
  explicit KilledFileSystem(Countdown& countdown) : countdown_(countdown) {}

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
    if (mode != OpenMode::kReadOnly && !disk_->Exists(path)) countdown_.KillIfLast();
    auto file = disk_->Open(path, mode);
    return file ? std::make_unique<KilledFile>(std::move(file), countdown_) : nullptr;
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
  Result Remove(const std::string& path) override {
    countdown_.KillIfLast();
    return disk_->Remove(path);
  }
  Result Rename(const std::string& from, const std::string& to) override {
    countdown_.KillIfLast();
    return disk_->Rename(from, to);
  }
  Result SyncFolder(const std::string& folder) override {
    countdown_.KillIfLast();
    return disk_->SyncFolder(folder);
  }

 private:
  std::unique_ptr<FileSystem> disk_ = MakeDiskFileSystem();
  Countdown& countdown_;
};

}  // namespace
}  // namespace quillomar::test

int main(int argc, char** argv) {
  using namespace quillomar;
  if (argc < 3) return 2;
  PrepareEnvironment();
  test::Countdown countdown(std::atoi(argv[1]));
  test::KilledFileSystem files(countdown);
  Session session(files, StateFolder());
  const CliStreams streams{std::cin, std::cout, std::cerr, false, false};
  const int exitCode = RunCli({argv + 2, argv + argc}, session, streams);
  std::cout << countdown.Count() << '\n';
  return exitCode;
}
