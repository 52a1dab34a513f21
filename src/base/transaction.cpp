#include "base/transaction.h"

#include <algorithm>
#include <array>

namespace quillomar {
namespace {

// In pieces: where something has changed, the first of them mostly tells.
bool AlreadyThere(File& file, std::uint64_t offset, ByteSpan bytes) {
  std::array<std::uint8_t, 4096> piece;
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
