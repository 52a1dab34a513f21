#include "journal/journal_folder.h"

#include <algorithm>
#include <set>

#include "base/checksum.h"
#include "base/format.h"
#include "base/paths.h"
#include "journal/journal_format.h"

namespace quillomar {
namespace {

constexpr const char* kRunning = ".journal";
constexpr const char* kSaved = ".saved";
constexpr const char* kUnfinished = ".new";
// Saved transactions that are kept, over all discs: some gigabytes at worst.
constexpr std::size_t kMostSaved = 3;

Result PutBackOne(File& journal, const JournaledFile& known, File& file) {
  if (file.Size() != known.size && Failed(file.SetSize(known.size))) return Result::kFailed;
  Bytes bytes;
  for (const KeptBytes& kept : known.kept) {
    bytes.resize(kept.size);
    if (journal.ReadAt(kept.journal, bytes) != bytes.size()) return Result::kFailed;
    if (Failed(file.WriteAt(kept.place, bytes))) return Result::kFailed;
  }
  return file.Sync();
}

bool NamesOneOf(const std::vector<JournaledFile>& known, const std::vector<std::string>& paths) {
  return std::any_of(known.begin(), known.end(), [&](const JournaledFile& file) {
    return std::find(paths.begin(), paths.end(), file.path) != paths.end();
  });
}

}  // namespace

Result PutBack(FileSystem& files, File& journal, const std::vector<JournaledFile>& known,
               const std::vector<std::shared_ptr<File>>& handles) {
  Result result = Result::kDone;
  std::set<std::string> folders;
  for (std::size_t i = 0; i < known.size(); ++i) {
    const JournaledFile& file = known[i];
    if (file.created) {
      if (files.Exists(file.path) && Failed(files.Remove(file.path))) result = Result::kFailed;
      folders.insert(SplitPath(file.path).folder);
    } else if (!handles.at(i) || Failed(PutBackOne(journal, file, *handles[i]))) {
      result = Result::kFailed;
    }
  }
  for (const std::string& folder : folders) {
    if (Failed(files.SyncFolder(folder))) result = Result::kFailed;
  }
  return result;
}

std::vector<std::string> JournalFolder::Canonical(const std::vector<std::string>& paths) {
  std::vector<std::string> canonical;
  canonical.reserve(paths.size());
  for (const std::string& path : paths) canonical.push_back(files_.Canonical(path));
  return canonical;
}

std::vector<std::string> JournalFolder::Find(const char* extension,
                                             const std::vector<std::string>& paths) {
  std::vector<std::string> found;
  for (const std::string& name : files_.List(path_)) {
    if (SplitPath(name).extension != extension) continue;
    const auto journal = files_.Open(JoinPath(path_, name), OpenMode::kReadOnly);
    const auto known = journal ? ReadJournal(*journal, JournalDepth::kNames) : std::nullopt;
    if (known && NamesOneOf(*known, paths)) found.push_back(JoinPath(path_, name));
  }
  return found;
}

std::vector<std::string> JournalFolder::Left(const std::vector<std::string>& paths) {
  std::vector<std::string> left = Find(kRunning, Canonical(paths));
  // One that nobody may write is no running one: it can't be restored yet, but must be known.
  const auto running = [this](const std::string& journal) {
    return files_.MayWrite(journal) && !files_.Open(journal, OpenMode::kExclusiveWrite);
  };
  left.erase(std::remove_if(left.begin(), left.end(), running), left.end());
  return left;
}

std::vector<std::string> JournalFolder::FilesOf(const std::string& journal) {
  std::vector<std::string> paths;
  const auto file = files_.Open(journal, OpenMode::kReadOnly);
  const auto known = file ? ReadJournal(*file, JournalDepth::kNames) : std::nullopt;
  if (!known) return paths;
  for (const JournaledFile& each : *known) paths.push_back(each.path);
  return paths;
}

std::unique_ptr<File> JournalFolder::Lock(const std::string& journal) {
  auto file = files_.Open(journal, OpenMode::kExclusiveWrite);
  if (file) return file;
  reporter_.ReportError(files_.MayWrite(journal)
                            ? "Another Quillomar is changing or restoring these files."
                            : Format("The journal %s cannot be written.\n"
                                     "Nothing was restored; it can be done later.",
                                     journal.c_str()));
  return nullptr;
}

Result JournalFolder::Restore(const std::string& journal) {
  const auto file = Lock(journal);
  if (!file) return Result::kFailed;
  const auto known = ReadJournal(*file);
  if (!known) return Refuse(journal);
  const auto handles = OpenAll(*known, *file);
  return handles ? PutAllBack(journal, *file, *known, *handles) : Result::kFailed;
}

void JournalFolder::ReportBlocked(const std::string& path) {
  reporter_.ReportError(
      Format("%s is missing, in use or cannot be written.\n"
             "Nothing was restored; it can be done later.",
             path.c_str()));
}

std::shared_ptr<File> JournalFolder::OpenKnown(const JournaledFile& known, File& journal) {
  std::shared_ptr<File> file = files_.Open(known.path, OpenMode::kExclusiveWrite);
  if (!file) {
    ReportBlocked(known.path);
    return nullptr;
  }
  if (KeepsWhatIsCutOff(known, file->Size()) &&
      IdentityBefore(*file, known, journal) == known.identity) {
    return file;
  }
  reporter_.ReportError(
      Format("%s is not the file that was being changed: another one stands in its place.\n"
             "Nothing was restored.",
             known.path.c_str()));
  return nullptr;
}

Result JournalFolder::Refuse(const std::string& journal) {
  reporter_.ReportError(
      Format("The journal %s is damaged. Nothing was restored.", journal.c_str()));
  return Result::kFailed;
}

std::optional<JournalFolder::Handles> JournalFolder::OpenAll(
    const std::vector<JournaledFile>& known, File& journal) {
  Handles handles;
  for (const JournaledFile& file : known) {
    if (file.created && files_.IsFolder(file.path)) {
      ReportBlocked(file.path);
      return std::nullopt;
    }
    handles.push_back(file.created ? nullptr : OpenKnown(file, journal));
    if (!file.created && !handles.back()) return std::nullopt;
  }
  return handles;
}

Result JournalFolder::PutAllBack(const std::string& path, File& journal,
                                 const std::vector<JournaledFile>& known, const Handles& handles) {
  if (!Failed(PutBack(files_, journal, known, handles))) return Drop(path);
  reporter_.ReportError(
      "The files could not be restored completely. Try again once the disk works.");
  return Result::kFailed;
}

Result JournalFolder::Forget(const std::string& journal) {
  const auto file = Lock(journal);
  return file ? Drop(journal) : Result::kFailed;
}

std::optional<std::string> JournalFolder::Saved(const std::vector<std::string>& paths) {
  const std::vector<std::string> saved = Find(kSaved, Canonical(paths));
  const auto newest =
      std::max_element(saved.begin(), saved.end(), [this](const auto& a, const auto& b) {
        return files_.ModificationTime(a) < files_.ModificationTime(b);
      });
  return newest == saved.end() ? std::nullopt : std::optional(*newest);
}

Result JournalFolder::TakeBack(const std::string& journal) {
  const auto file = Lock(journal);
  if (!file) return Result::kFailed;
  const auto known = ReadJournal(*file);
  if (!known) return Refuse(journal);
  for (const JournaledFile& each : *known) {
    const auto stamp = files_.Stamp(each.path);
    if (stamp && each.left && stamp->size == each.left->size &&
        stamp->modified == each.left->modified) {
      continue;
    }
    reporter_.ReportError(Format("%s has been changed since it was saved.\nNothing was restored.",
                                 each.path.c_str()));
    return Result::kFailed;
  }
  const auto handles = OpenAll(*known, *file);
  if (!handles) return Result::kFailed;
  // From here on it is a transaction that was interrupted.
  const std::string running = path_ + PathSeparator() + SplitPath(journal).title + kRunning;
  if (files_.Exists(running) || Failed(files_.Rename(journal, running)) ||
      Failed(files_.SyncFolder(path_))) {
    reporter_.ReportError("The journal could not be prepared. Nothing was restored.");
    return Result::kFailed;
  }
  return PutAllBack(running, *file, *known, *handles);
}

std::string JournalFolder::UnfinishedPath(const std::string& journal) {
  return journal + kUnfinished;
}

std::string JournalFolder::JournalPath(const std::string& firstFile) const {
  const Bytes name(firstFile.begin(), firstFile.end());
  return JoinPath(path_,
                  Format("%016llx", static_cast<unsigned long long>(Checksum(name))) + kRunning);
}

void JournalFolder::DropHalfMade(const std::string& path) {
  for (const std::string& left : Left({path})) {
    const auto journal = files_.Open(left, OpenMode::kReadOnly);
    const auto known = journal ? ReadJournal(*journal, JournalDepth::kNames) : std::nullopt;
    const bool created = known && std::all_of(known->begin(), known->end(),
                                              [](const auto& file) { return file.created; });
    if (created) (void)Restore(left);
  }
}

bool JournalFolder::Claimed(const std::string& canonicalPath, const std::string& own) {
  const std::vector<std::string> journals = Find(kRunning, {canonicalPath});
  return std::any_of(journals.begin(), journals.end(),
                     [&](const std::string& journal) { return journal != own; });
}

Result JournalFolder::Retire(const std::string& journal, const std::vector<std::string>& paths) {
  const std::string saved = JoinPath(path_, SplitPath(journal).title + kSaved);
  if (Failed(files_.Rename(journal, saved))) return Result::kFailed;
  // All that was written is safe already. Should the new name not last, the files can be made what
  // they were before: that is as good.
  (void)files_.SyncFolder(path_);
  for (const std::string& older : Find(kSaved, paths)) {
    if (older != saved) (void)files_.Remove(older);
  }
  DropOld();
  return Result::kDone;
}

void JournalFolder::DropOld() {
  std::vector<std::pair<std::int64_t, std::string>> byAge;
  for (const std::string& name : files_.List(path_)) {
    const std::string path = JoinPath(path_, name);
    const std::string extension = SplitPath(name).extension;
    if (extension == kSaved) byAge.emplace_back(files_.ModificationTime(path).value_or(0), path);
    const bool unfinished = extension == kUnfinished;
    if (unfinished && files_.Open(path, OpenMode::kExclusiveWrite)) (void)files_.Remove(path);
  }
  std::sort(byAge.begin(), byAge.end());
  for (std::size_t i = 0; i + kMostSaved < byAge.size(); ++i) (void)files_.Remove(byAge[i].second);
}

Result JournalFolder::Drop(const std::string& path) {
  return Failed(files_.Remove(path)) ? Result::kFailed : files_.SyncFolder(path_);
}

}  // namespace quillomar
