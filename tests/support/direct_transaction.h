#pragma once

#include "base/transaction.h"

namespace quillomar::test {

// Writes straight into the files, with no way back; for what is tested below the journal.
class DirectTransactionSource final : public TransactionSource {
 public:
  explicit DirectTransactionSource(FileSystem& files) : files_(files) {}
  std::unique_ptr<WriteTransaction> Begin() override;

 private:
  FileSystem& files_;
};

}  // namespace quillomar::test
