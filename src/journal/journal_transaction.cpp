#include "journal/journal_transaction.h"

#include <algorithm>
#include <random>
#include <set>

#include "base/format.h"
#include "base/paths.h"
#include "journal/journal_format.h"

namespace quillomar {
namespace {

// Changes that are held in memory before the files are touched: 64 MiB.
constexpr std::size_t kMostPendingPages = std::size_t{1} << 15;
constexpr std::size_t kJournalBlock = std::size_t{1} << 20;
// Room for what a journal holds besides old bytes, and for the file system's own needs.
constexpr std::uint64_t kRoomToSpare = std::uint64_t{1} << 18;

std::uint64_t RandomTag() {
  std::random_device source;
  constexpr int kHalf = 32;
  return std::uint64_t{source()} << kHalf | source();
}

}  // namespace

JournalTransaction::~JournalTransaction() {
  if (!committed_) (void)Undo();
}

Result JournalTransaction::Break() {
  broken_ = true;
  return Result::kFailed;
}

Result JournalTransaction::Refuse(const std::string& text) {
  refused_ = true;
  reporter_.ReportError(text);
  return Result::kFailed;
}

JournalTransaction::Member* JournalTransaction::Find(const File& file) {
  const auto holds = [&](const auto& member) { return member->pages.Handle().get() == &file; };
  const auto known = std::find_if(members_.begin(), members_.end(), holds);
  if (known != members_.end()) return known->get();
  // A second handle of a file must see what was written through the first.
  const std::string path = files_.Canonical(file.Path());
  const auto same = std::find_if(members_.begin(), members_.end(),
                                 [&](const auto& member) { return member->path == path; });
  return same == members_.end() ? nullptr : same->get();
}

JournalTransaction::Member& JournalTransaction::Touch(const std::shared_ptr<File>& file) {
  if (Member* const known = Find(*file)) return *known;
  members_.push_back(std::make_unique<Member>(
      Member{PageSet(file, false), files_.Canonical(file->Path()), std::nullopt}));
  return *members_.back();
}

std::size_t JournalTransaction::PendingPages() const {
  std::size_t count = 0;
  for (const auto& member : members_) count += member->pages.PendingPages();
  return count;
}

Result JournalTransaction::FlushIfMuch() {
  return PendingPages() < kMostPendingPages ? Result::kDone : Flush();
}

Result JournalTransaction::Write(const std::shared_ptr<File>& file, std::uint64_t offset,
                                 ByteSpan bytes) {
  if (broken_ || Failed(Touch(file).pages.Write(offset, bytes))) return Break();
  return FlushIfMuch();
}

Result JournalTransaction::SetSize(const std::shared_ptr<File>& file, std::uint64_t size) {
  if (broken_) return Result::kFailed;
  Touch(file).pages.SetSize(size);
  return Result::kDone;
}

std::optional<std::size_t> JournalTransaction::Read(File& file, std::uint64_t offset,
                                                    std::span<std::uint8_t> out) {
  Member* const known = Find(file);
  return known == nullptr ? file.ReadAt(offset, out) : known->pages.Read(offset, out);
}

std::shared_ptr<File> JournalTransaction::OpenOrCreate(const std::string& path) {
  if (broken_) return nullptr;
  const std::string canonical = files_.Canonical(path);
  if (!journal_) folder_.DropHalfMade(canonical);
  if (files_.Exists(path)) return files_.Open(path, OpenMode::kReadWrite);
  // The journal knows of the file before there is one.
  if (Failed(AnnounceCreation(canonical))) {
    broken_ = true;
    return nullptr;
  }
  std::shared_ptr<File> file = files_.Open(path, OpenMode::kCreateKeeping);
  if (!file) {
    broken_ = true;
    return nullptr;
  }
  const auto number = static_cast<std::uint32_t>(announced_.size() - 1);
  members_.push_back(std::make_unique<Member>(Member{PageSet(file, true), canonical, number}));
  return file;
}

Result JournalTransaction::AnnounceCreation(const std::string& path) {
  if (Failed(Admit(path, true)) || Failed(CheckRoom(PendingPages())) || Failed(NeedJournal(path))) {
    return Result::kFailed;
  }
  const RecordHead head{RecordKind::kFile, static_cast<std::uint32_t>(announced_.size()), 0, 0};
  if (Failed(Append(head, MakeFilePayload(true, 0, path)))) return Result::kFailed;
  announced_.push_back(path);
  return SyncJournal();
}

Result JournalTransaction::Admit(const std::string& path, bool created) {
  if (!created && !files_.MayWrite(path)) {
    return Refuse(Format("%s can no longer be written.\nNothing was changed.", path.c_str()));
  }
  if (!folder_.Claimed(path, lastingPath_)) return Result::kDone;
  return Refuse(
      Format("%s is being changed by another Quillomar, or waits for being restored.\n"
             "Nothing was changed.",
             path.c_str()));
}

Result JournalTransaction::CheckRoom(std::uint64_t pages) {
  const std::uint64_t needed = pages * (kPageSize + kRecordHeadSize) + kRoomToSpare;
  const auto room = files_.FreeSpace(folder_.Path());
  if (!room || *room >= needed) return Result::kDone;
  constexpr std::uint64_t kKiB = 1024;
  return Refuse(
      Format("There is not enough room in %s for a copy of what will be overwritten: "
             "%llu KiB are needed.\nNothing was changed.",
             folder_.Path().c_str(), static_cast<unsigned long long>(needed / kKiB)));
}

Result JournalTransaction::NeedJournal(const std::string& firstPath) {
  if (journal_) return Result::kDone;
  (void)files_.CreateFolder(folder_.Path());
  lastingPath_ = folder_.JournalPath(firstPath);
  journalPath_ = JournalFolder::UnfinishedPath(lastingPath_);
  if (!files_.Exists(lastingPath_)) journal_ = files_.Open(journalPath_, OpenMode::kCreateLocked);
  if (!journal_) {
    return Refuse(
        Format("The journal %s cannot be made.\nNothing was changed.", lastingPath_.c_str()));
  }
  tag_ = RandomTag();
  buffer_ = MakeJournalHeader(tag_);
  return Result::kDone;
}

Result JournalTransaction::Append(const RecordHead& head, ByteSpan payload) {
  const Bytes record = MakeRecord(tag_, head, payload);
  buffer_.insert(buffer_.end(), record.begin(), record.end());
  return buffer_.size() < kJournalBlock ? Result::kDone : WriteBuffer();
}

Result JournalTransaction::WriteBuffer() {
  if (buffer_.empty()) return Result::kDone;
  if (Failed(journal_->WriteAt(written_, buffer_))) return Result::kFailed;
  written_ += buffer_.size();
  buffer_.clear();
  return Result::kDone;
}

Result JournalTransaction::SyncJournal() {
  if (Failed(WriteBuffer()) || Failed(journal_->Sync())) return Result::kFailed;
  if (journalPath_ == lastingPath_) return Result::kDone;
  if (Failed(files_.Rename(journalPath_, lastingPath_))) return Result::kFailed;
  journalPath_ = lastingPath_;
  return files_.SyncFolder(folder_.Path());
}

Result JournalTransaction::Announce(Member& member) {
  const auto identity = IdentityNow(*member.pages.Handle());
  if (!identity) return Result::kFailed;
  member.number = static_cast<std::uint32_t>(announced_.size());
  announced_.push_back(member.path);
  return Append({RecordKind::kFile, *member.number, 0, member.pages.OldSize()},
                MakeFilePayload(false, *identity, member.path));
}

Result JournalTransaction::KeepOldBytes(Member& member) {
  if (!member.number && Failed(Announce(member))) return Result::kFailed;
  Bytes old;
  for (const PageSet::Run& run : member.pages.TakeEndangered()) {
    old.resize(run.size);
    if (member.pages.Handle()->ReadAt(run.place, old) != run.size) return Result::kFailed;
    if (Failed(Append({RecordKind::kBytes, *member.number, 0, run.place}, old))) {
      return Result::kFailed;
    }
  }
  return Result::kDone;
}

Result JournalTransaction::Flush() {
  std::vector<Member*> changed;
  for (const auto& member : members_) {
    if (member->pages.Pending()) changed.push_back(member.get());
  }
  if (changed.empty()) return Result::kDone;
  for (const Member* const member : changed) {
    if (!member->number && Failed(Admit(member->path, false))) return Break();
  }
  if (Failed(CheckRoom(PendingPages())) || Failed(NeedJournal(changed.front()->path)))
    return Break();
  for (Member* const member : changed) {
    if (Failed(KeepOldBytes(*member))) return Break();
  }
  if (Failed(SyncJournal())) return Break();
  for (Member* const member : changed) {
    if (Failed(member->pages.Apply())) return Break();
  }
  return Result::kDone;
}

Result JournalTransaction::SyncMembers() {
  std::set<std::string> folders;
  for (const auto& member : members_) {
    if (member->pages.Created()) folders.insert(SplitPath(member->path).folder);
    const bool changed = member->pages.Applied() || member->pages.Created();
    if (changed && Failed(member->pages.Handle()->Sync())) return Result::kFailed;
  }
  for (const std::string& folder : folders) {
    if (Failed(files_.SyncFolder(folder))) return Result::kFailed;
  }
  return Result::kDone;
}

Result JournalTransaction::CloseJournal() {
  Result closed = Result::kDone;
  for (std::uint32_t number = 0; number < announced_.size(); ++number) {
    const FileStamp stamp = files_.Stamp(announced_[number]).value_or(FileStamp());
    Bytes time(kClosingTimeSize);
    PutLittle64(time, 0, static_cast<std::uint64_t>(stamp.modified));
    if (Failed(Append({RecordKind::kClosing, number, 0, stamp.size}, time)))
      closed = Result::kFailed;
  }
  // A journal without its end only cannot be used to take the transaction back.
  if (Failed(closed) || Failed(WriteBuffer())) buffer_.clear();
  return folder_.Retire(journalPath_, announced_);
}

Result JournalTransaction::Commit() {
  const bool written = !broken_ && !Failed(Flush());
  if (written && !journal_) {
    committed_ = true;
    return Result::kDone;
  }
  if (written && !Failed(SyncMembers()) && !Failed(CloseJournal())) {
    committed_ = true;
    journal_.reset();
    return Result::kDone;
  }
  if (!Failed(Undo()) && !refused_) {
    reporter_.ReportError(
        "The changes could not be written safely: the disk is full or failing.\n"
        "All files are as they were. Keep them open and try again once the disk works.");
  }
  return Break();
}

Result JournalTransaction::Undo() {
  if (!journal_) return Result::kDone;
  // What failed once may have been a passing fault.
  if (Failed(TryUndo()) && Failed(TryUndo())) {
    reporter_.ReportError(
        "The files could not be put back as they were. What they held is kept:\n"
        "open them again to restore it once the disk works.");
    journal_.reset();
    return Result::kFailed;
  }
  journal_.reset();
  return Result::kDone;
}

Result JournalTransaction::TryUndo() {
  // A journal that never got its lasting name was made before the first file was touched.
  if (journalPath_ == lastingPath_) {
    const auto known = ReadJournal(*journal_);
    std::vector<std::shared_ptr<File>> handles(announced_.size());
    for (const auto& member : members_) {
      if (member->number) handles[*member->number] = member->pages.Handle();
    }
    if (!known || Failed(PutBack(files_, *journal_, *known, handles))) return Result::kFailed;
  }
  return files_.Exists(journalPath_) ? folder_.Drop(journalPath_) : Result::kDone;
}

}  // namespace quillomar
