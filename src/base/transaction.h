#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/file.h"

namespace quillomar {

// Every change to a disc's files goes through one transaction, from its first byte to Commit. All
// of it takes effect, or nothing does: what is not committed when the transaction ends is undone.
class WriteTransaction {
 public:
  virtual ~WriteTransaction() = default;
  // Refuses, with a message, changes of so many bytes in all that could not be taken back. Called
  // before the first of them by whoever may change much.
  [[nodiscard]] virtual Result Reserve(std::uint64_t bytes) = 0;
  // Overwrites bytes of the file; what already stands there is not written again.
  [[nodiscard]] virtual Result Write(const std::shared_ptr<File>& file, std::uint64_t offset,
                                     ByteSpan bytes) = 0;
  [[nodiscard]] virtual Result SetSize(const std::shared_ptr<File>& file, std::uint64_t size) = 0;
  // As File::ReadAt, with the transaction's changes: the file itself may not have them yet.
  [[nodiscard]] virtual std::optional<std::size_t> Read(File& file, std::uint64_t offset,
                                                        std::span<std::uint8_t> out) = 0;
  // Opens a file for writing; one that is missing is created as a part of the transaction. Null
  // when it cannot be opened.
  [[nodiscard]] virtual std::shared_ptr<File> OpenOrCreate(const std::string& path) = 0;
  // Nothing more can be written and Commit will fail: what went wrong concerns all of it.
  [[nodiscard]] virtual bool Broken() const = 0;
  // Returns once all changes have reached the device. Where one of them could not be made safe, all
  // are undone and it fails, with a message.
  [[nodiscard]] virtual Result Commit() = 0;
};

// Where transactions come from; tests put a failing one in its place.
class TransactionSource {
 public:
  virtual ~TransactionSource() = default;
  [[nodiscard]] virtual std::unique_ptr<WriteTransaction> Begin() = 0;
};

}  // namespace quillomar
