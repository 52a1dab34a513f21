#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "journal/journal_format.h"

namespace quillomar {

// One file of a transaction: its changes in memory, and which of its bytes the journal keeps.
class PageSet {
 public:
  // A run of bytes in the file.
  struct Run {
    std::uint64_t place;
    std::size_t size;
  };

  PageSet(std::shared_ptr<File> file, bool created);

  // Changes bytes in memory, those that differ; the file grows where they reach beyond its end.
  // Fails on a read error.
  [[nodiscard]] Result Write(std::uint64_t offset, ByteSpan bytes);
  void SetSize(std::uint64_t size);
  // As File::ReadAt, with the changes.
  [[nodiscard]] std::optional<std::size_t> Read(std::uint64_t offset, std::span<std::uint8_t> out);

  [[nodiscard]] bool Pending() const;
  [[nodiscard]] std::size_t PendingPages() const { return pages_.size(); }
  // Bytes of the file as found that Apply will overwrite or cut off and that were not asked for
  // before; each run fits a record.
  [[nodiscard]] std::vector<Run> TakeEndangered();
  // Writes the changes into the file.
  [[nodiscard]] Result Apply();

  [[nodiscard]] const std::shared_ptr<File>& Handle() const { return file_; }
  [[nodiscard]] bool Created() const { return created_; }
  // Before the transaction.
  [[nodiscard]] std::uint64_t OldSize() const { return oldSize_; }

  // Whether Apply has changed the file.
  [[nodiscard]] bool Applied() const { return applied_; }

 private:
  using Page = std::vector<std::uint8_t>;

  // Pages from one on as they are now; fails on a read error.
  [[nodiscard]] Result Load(std::uint64_t page, std::span<std::uint8_t> out);
  // Keeps those pages from `first` on that `wanted`, `begin` bytes into the first, makes others.
  void TakeDifferences(std::uint64_t first, ByteSpan now, std::size_t begin, ByteSpan wanted);
  [[nodiscard]] Result WritePages(std::uint64_t first, const Bytes& bytes);

  std::shared_ptr<File> file_;
  bool created_;
  std::uint64_t oldSize_;
  std::uint64_t size_;   // with the changes
  std::uint64_t valid_;  // bytes of the file on disk that still count; beyond them all is zero
  std::map<std::uint64_t, Page> pages_;  // changed, by number
  std::vector<bool> kept_;               // pages as found that the journal has, by number
  bool applied_ = false;
};

}  // namespace quillomar
