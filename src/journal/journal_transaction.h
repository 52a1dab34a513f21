#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/reporting.h"
#include "base/transaction.h"
#include "journal/journal_folder.h"
#include "journal/page_set.h"

namespace quillomar {

// A transaction that can be undone from its journal, by this program or by its next run.
//
// Changes gather in memory. When there are enough of them, and at Commit, the bytes that they will
// overwrite go to the journal, which is synced before the first file is touched; at Commit the
// files are synced before the journal changes its name, and from then on the transaction is
// committed. So a transaction of ordinary size costs two syncs of the journal's folder and one of
// the journal beside one for each file, whatever the number of its writes.
class JournalTransaction final : public WriteTransaction {
 public:
  JournalTransaction(FileSystem& files, Reporter& reporter, const std::string& folder)
      : files_(files), reporter_(reporter), folder_(files, reporter, folder) {}
  ~JournalTransaction() override;
  JournalTransaction(const JournalTransaction&) = delete;
  JournalTransaction& operator=(const JournalTransaction&) = delete;

  Result Reserve(std::uint64_t bytes) override { return CheckRoom(bytes / kPageSize); }
  Result Write(const std::shared_ptr<File>& file, std::uint64_t offset, ByteSpan bytes) override;
  Result SetSize(const std::shared_ptr<File>& file, std::uint64_t size) override;
  std::optional<std::size_t> Read(File& file, std::uint64_t offset,
                                  std::span<std::uint8_t> out) override;
  std::shared_ptr<File> OpenOrCreate(const std::string& path) override;
  [[nodiscard]] bool Broken() const override { return broken_; }
  Result Commit() override;

 private:
  struct Member {
    PageSet pages;
    std::string path;                     // canonical
    std::optional<std::uint32_t> number;  // in the journal, once it has its record there
  };

  [[nodiscard]] Member* Find(const File& file);
  [[nodiscard]] Member& Touch(const std::shared_ptr<File>& file);
  [[nodiscard]] std::size_t PendingPages() const;
  Result Break();                          // marks the transaction as broken; always fails
  Result Refuse(const std::string& text);  // says why; always fails

  [[nodiscard]] Result FlushIfMuch();
  [[nodiscard]] Result Flush();
  [[nodiscard]] Result KeepOldBytes(Member& member);
  // What must hold before a file is written to or created for the first time.
  [[nodiscard]] Result Admit(const std::string& path, bool created);
  [[nodiscard]] Result CheckRoom(std::uint64_t pages);
  [[nodiscard]] Result NeedJournal(const std::string& firstPath);
  [[nodiscard]] Result Announce(Member& member);
  [[nodiscard]] Result AnnounceCreation(const std::string& path);
  [[nodiscard]] Result Append(const RecordHead& head, ByteSpan payload);
  [[nodiscard]] Result WriteBuffer();
  // Makes what was appended safe, under the journal's lasting name.
  [[nodiscard]] Result SyncJournal();
  [[nodiscard]] Result SyncMembers();
  [[nodiscard]] Result CloseJournal();
  Result Undo();
  [[nodiscard]] Result TryUndo();

  FileSystem& files_;
  Reporter& reporter_;
  JournalFolder folder_;
  std::vector<std::unique_ptr<Member>> members_;
  std::vector<std::string> announced_;  // canonical paths by number in the journal

  std::unique_ptr<File> journal_;
  std::string journalPath_;  // as it is named now
  std::string lastingPath_;
  std::uint64_t tag_ = 0;
  std::uint64_t written_ = 0;  // bytes of the journal in its file
  Bytes buffer_;               // those that follow
  bool broken_ = false;
  bool refused_ = false;  // the user knows why nothing was changed
  bool committed_ = false;
};

class JournalTransactionSource final : public TransactionSource {
 public:
  // `folder` holds the journals; it is created when the first one is written.
  JournalTransactionSource(FileSystem& files, Reporter& reporter, std::string folder)
      : files_(files), reporter_(reporter), folder_(std::move(folder)) {}
  [[nodiscard]] std::unique_ptr<WriteTransaction> Begin() override {
    return std::make_unique<JournalTransaction>(files_, reporter_, folder_);
  }

 private:
  FileSystem& files_;
  Reporter& reporter_;
  std::string folder_;
};

}  // namespace quillomar
