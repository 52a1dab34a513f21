#include "base/transaction.h"

#include <algorithm>

namespace quillomar {
namespace {

bool AlreadyThere(File& file, std::uint64_t offset, ByteSpan bytes) {
  Bytes current(bytes.size());
  const auto count = file.ReadAt(offset, current);
  return count == bytes.size() && std::equal(bytes.begin(), bytes.end(), current.begin());
}

class DirectTransaction final : public WriteTransaction {
 public:
  Result Write(const std::shared_ptr<File>& file, std::uint64_t offset, ByteSpan bytes) override {
    if (AlreadyThere(*file, offset, bytes)) return Result::kDone;
    Touch(file);
    return file->WriteAt(offset, bytes);
  }

  Result SetSize(const std::shared_ptr<File>& file, std::uint64_t size) override {
    if (file->Size() == size) return Result::kDone;
    Touch(file);
    return file->SetSize(size);
  }

  Result Commit() override {
    Result result = Result::kDone;
    for (const auto& file : touched_) {
      if (Failed(file->Sync())) result = Result::kFailed;
    }
    touched_.clear();
    return result;
  }

 private:
  void Touch(const std::shared_ptr<File>& file) {
    if (std::find(touched_.begin(), touched_.end(), file) == touched_.end()) {
      touched_.push_back(file);
    }
  }

  std::vector<std::shared_ptr<File>> touched_;
};

}  // namespace

std::unique_ptr<WriteTransaction> DirectTransactionSource::Begin() {
  return std::make_unique<DirectTransaction>();
}

}  // namespace quillomar
