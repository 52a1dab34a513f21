#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/reporting.h"
#include "journal/journal_reader.h"

namespace quillomar {

// Writes back what a journal keeps: bytes, sizes, and files that were not there. `handles` are the
// files in the journal's order, open for writing (null: a created file that is to go). Returns once
// all of it has reached the device. May be repeated after a failure or a crash.
[[nodiscard]] Result PutBack(FileSystem& files, File& journal,
                             const std::vector<JournaledFile>& known,
                             const std::vector<std::shared_ptr<File>>& handles);

// The folder of the journals. "NAME.journal" belongs to a transaction that runs or was interrupted:
// a running one keeps it locked. "NAME.saved" belongs to one that was committed and can still be
// taken back. NAME comes from the path of the first file.
class JournalFolder {
 public:
  JournalFolder(FileSystem& files, Reporter& reporter, std::string path)
      : files_(files), reporter_(reporter), path_(std::move(path)) {}

  // Journals left by interrupted transactions that changed one of these files.
  [[nodiscard]] std::vector<std::string> Left(const std::vector<std::string>& paths);
  // The files that a journal speaks of.
  [[nodiscard]] std::vector<std::string> FilesOf(const std::string& journal);
  // Makes the files what they were and removes the journal. Fails with a message, and before the
  // first byte where a file is missing, cannot be written, or is another one by now. None of the
  // files may be open.
  Result Restore(const std::string& journal);
  // Keeps the files as they are: removes the journal.
  Result Forget(const std::string& journal);

  // Journal of the last transaction that was committed on one of these files, while it is kept.
  [[nodiscard]] std::optional<std::string> Saved(const std::vector<std::string>& paths);
  // Undoes that transaction, as Restore does; also fails when a file has been changed since.
  Result TakeBack(const std::string& journal);

  // For the transaction that writes journals.
  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] std::string JournalPath(const std::string& firstFile) const;
  // Its name until it holds something.
  [[nodiscard]] static std::string UnfinishedPath(const std::string& journal);
  // Removes what is there of a file that an interrupted transaction was only creating: nothing of
  // anyone's is lost by that, and nobody could open it to be asked.
  void DropHalfMade(const std::string& path);
  // Whether some journal but `own` speaks of the file: it is being changed, or waits for recovery.
  [[nodiscard]] bool Claimed(const std::string& canonicalPath, const std::string& own);
  // Renames the journal of a committed transaction, which commits it, and drops older ones and what
  // interrupted ones left before they changed anything. Fails when the name could not be changed.
  [[nodiscard]] Result Retire(const std::string& journal, const std::vector<std::string>& paths);
  // Removes a file of this folder and makes that last.
  Result Drop(const std::string& path);

 private:
  using Handles = std::vector<std::shared_ptr<File>>;

  [[nodiscard]] std::vector<std::string> Find(const char* extension,
                                              const std::vector<std::string>& paths);
  [[nodiscard]] std::vector<std::string> Canonical(const std::vector<std::string>& paths);
  void DropOld();
  // Says that a journal cannot be read; always fails.
  Result Refuse(const std::string& journal);
  void ReportBlocked(const std::string& path);
  [[nodiscard]] std::shared_ptr<File> OpenKnown(const JournaledFile& known, File& journal);
  // The files as PutBack wants them; nothing, with a message, where one may not be restored.
  [[nodiscard]] std::optional<Handles> OpenAll(const std::vector<JournaledFile>& known,
                                               File& journal);
  // The rest of a restore: writes, and removes the journal, which stands at `path`.
  Result PutAllBack(const std::string& path, File& journal, const std::vector<JournaledFile>& known,
                    const Handles& handles);
  [[nodiscard]] std::unique_ptr<File> Lock(const std::string& journal);

  FileSystem& files_;
  Reporter& reporter_;
  std::string path_;
};

}  // namespace quillomar
