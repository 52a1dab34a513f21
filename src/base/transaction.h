#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/file.h"

namespace quillomar {

// Every change to a disc's files goes through one transaction, from its first byte to Commit.
class WriteTransaction {
 public:
  virtual ~WriteTransaction() = default;
  // Overwrites bytes of the file; what already stands there is not written again.
  [[nodiscard]] virtual Result Write(const std::shared_ptr<File>& file, std::uint64_t offset,
                                     ByteSpan bytes) = 0;
  [[nodiscard]] virtual Result SetSize(const std::shared_ptr<File>& file, std::uint64_t size) = 0;
  // Returns once all changes have reached the device. Fails when any of them could not be made
  // safe.
  [[nodiscard]] virtual Result Commit() = 0;
};

// Where transactions come from; tests put a failing one in its place.
class TransactionSource {
 public:
  virtual ~TransactionSource() = default;
  [[nodiscard]] virtual std::unique_ptr<WriteTransaction> Begin() = 0;
};

// Writes straight into the files and syncs each changed file at Commit.
class DirectTransactionSource final : public TransactionSource {
 public:
  [[nodiscard]] std::unique_ptr<WriteTransaction> Begin() override;
};

}  // namespace quillomar
