#include "support/direct_transaction.h"

#include <algorithm>
#include <set>

namespace quillomar::test {
namespace {

class DirectTransaction final : public WriteTransaction {
 public:
  explicit DirectTransaction(FileSystem& files) : files_(files) {}

  Result Write(const std::shared_ptr<File>& file, std::uint64_t offset, ByteSpan bytes) override {
    Bytes current(bytes.size());
    const auto count = file->ReadAt(offset, current);
    if (count == bytes.size() && std::equal(bytes.begin(), bytes.end(), current.begin())) {
      return Result::kDone;
    }
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
