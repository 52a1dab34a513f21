#include "support/direct_transaction.h"

#include <algorithm>
#include <array>
#include <set>

namespace quillomar::test {
namespace {

// In pieces: where something has changed, the first of them mostly tells.
bool AlreadyThere(File& file, std::uint64_t offset, ByteSpan bytes) {
  std::array<std::uint8_t, 4096> piece{};
  for (std::size_t done = 0; done < bytes.size(); done += piece.size()) {
    const ByteSpan wanted = bytes.subspan(done, std::min(piece.size(), bytes.size() - done));
    const auto there = std::span(piece).first(wanted.size());
    if (file.ReadAt(offset + done, there) != wanted.size() ||
        !std::equal(wanted.begin(), wanted.end(), there.begin())) {
      return false;
    }
  }
  return true;
}

class DirectTransaction final : public WriteTransaction {
 public:
  explicit DirectTransaction(FileSystem& files) : files_(files) {}

  Result Reserve(std::uint64_t) override { return Result::kDone; }

  Result Write(const std::shared_ptr<File>& file, std::uint64_t offset, ByteSpan bytes) override {
    if (AlreadyThere(*file, offset, bytes)) return Result::kDone;
    touched_.insert(file);
    return file->WriteAt(offset, bytes);
  }

  Result SetSize(const std::shared_ptr<File>& file, std::uint64_t size) override {
    if (file->Size() == size) return Result::kDone;
    touched_.insert(file);
    return file->SetSize(size);
  }

  std::optional<std::size_t> Read(File& file, std::uint64_t offset,
                                  std::span<std::uint8_t> out) override {
    return file.ReadAt(offset, out);
  }

  std::shared_ptr<File> OpenOrCreate(const std::string& path) override {
    return files_.Open(path, OpenMode::kCreateKeeping);
  }

  [[nodiscard]] bool Broken() const override { return false; }

  Result Commit() override {
    Result result = Result::kDone;
    for (const auto& file : touched_) {
      if (Failed(file->Sync())) result = Result::kFailed;
    }
    return result;
  }

 private:
  FileSystem& files_;
  std::set<std::shared_ptr<File>> touched_;
};

}  // namespace

std::unique_ptr<WriteTransaction> DirectTransactionSource::Begin() {
  return std::make_unique<DirectTransaction>(files_);
}

}  // namespace quillomar::test
