#include "journal/journal_reader.h"

#include <algorithm>

#include "base/checksum.h"
#include "journal/journal_format.h"

namespace quillomar {
namespace {

bool ReadWhole(File& file, std::uint64_t place, std::span<std::uint8_t> out) {
  return file.ReadAt(place, out) == out.size();
}

std::optional<std::uint64_t> ReadTag(File& journal) {
  Bytes header(kJournalHeaderSize);
  if (!ReadWhole(journal, 0, header)) return std::nullopt;
  const std::uint64_t tag = GetLittle64(header, kJournalTagOffset);
  return header == MakeJournalHeader(tag) ? std::optional(tag) : std::nullopt;
}

// Goes from record to record.
class RecordWalker {
 public:
  RecordWalker(File& journal, std::uint64_t tag, JournalDepth depth)
      : journal_(journal), tag_(tag), depth_(depth) {}

  // The next whole record; its payload stands in Payload.
  std::optional<RecordHead> Next() {
    Bytes bytes(kRecordHeadSize);
    RecordHead head;
    do {
      if (!ReadWhole(journal_, next_, bytes) || GetLittle32(bytes, 0) != kRecordMark) return {};
      head = {static_cast<RecordKind>(GetLittle32(bytes, kRecordKindOffset)),
              GetLittle32(bytes, kRecordFileOffset), GetLittle32(bytes, kRecordLengthOffset),
              GetLittle64(bytes, kRecordValueOffset)};
      if (head.length > kMostPayload) return {};
      payloadPlace_ = next_ + kRecordHeadSize;
      next_ = payloadPlace_ + head.length;
    } while (depth_ == JournalDepth::kNames && head.kind == RecordKind::kBytes);
    payload_.resize(head.length);
    if (!ReadWhole(journal_, payloadPlace_, payload_)) return {};
    const Bytes whole = MakeRecord(tag_, head, payload_);
    return std::equal(bytes.begin(), bytes.end(), whole.begin()) ? std::optional(head)
                                                                 : std::nullopt;
  }

  [[nodiscard]] const Bytes& Payload() const { return payload_; }
  [[nodiscard]] std::uint64_t PayloadPlace() const { return payloadPlace_; }

 private:
  File& journal_;
  std::uint64_t tag_;
  JournalDepth depth_;
  std::uint64_t next_ = kJournalHeaderSize;
  std::uint64_t payloadPlace_ = 0;
  Bytes payload_;
};

bool TakeFile(std::vector<JournaledFile>& files, const RecordHead& head, const Bytes& payload) {
  const bool follows = head.file == files.size() && head.file < kMostJournalFiles;
  if (!follows || payload.size() < kFilePathOffset) return false;
  JournaledFile file;
  file.path.assign(payload.begin() + kFilePathOffset, payload.end());
  const auto sameFile = [&](const JournaledFile& other) { return other.path == file.path; };
  if (std::any_of(files.begin(), files.end(), sameFile)) return false;
  file.created = GetLittle32(payload, kFileCreatedOffset) != 0;
  file.identity = GetLittle64(payload, kFileIdentityOffset);
  file.size = head.value;
  files.push_back(std::move(file));
  return true;
}

bool TakeRecord(std::vector<JournaledFile>& files, const RecordHead& head,
                const RecordWalker& walker) {
  if (head.kind == RecordKind::kFile) return TakeFile(files, head, walker.Payload());
  if (head.file >= files.size()) return false;
  JournaledFile& file = files[head.file];
  switch (head.kind) {
    case RecordKind::kBytes:
      if (head.value > file.size || head.length > file.size - head.value) return false;
      file.kept.push_back({head.value, walker.PayloadPlace(), head.length});
      return true;
    case RecordKind::kClosing:
      if (head.length != kClosingTimeSize) return false;
      file.left =
          FileStamp{0, head.value, static_cast<std::int64_t>(GetLittle64(walker.Payload(), 0))};
      return true;
    case RecordKind::kFile:
      break;
  }
  return false;
}

// Puts kept bytes over those of a page.
bool OverlayKept(std::uint64_t place, Bytes& page, const JournaledFile& known, File& journal) {
  for (const KeptBytes& kept : known.kept) {
    const std::uint64_t begin = std::max(place, kept.place);
    const std::uint64_t end = std::min(place + page.size(), kept.place + kept.size);
    if (begin >= end) continue;
    const auto out = std::span(page).subspan(begin - place, end - begin);
    if (!ReadWhole(journal, kept.journal + (begin - kept.place), out)) return false;
  }
  return true;
}

}  // namespace

std::optional<std::vector<JournaledFile>> ReadJournal(File& journal, JournalDepth depth) {
  const auto tag = ReadTag(journal);
  if (!tag) return std::nullopt;
  std::vector<JournaledFile> files;
  RecordWalker walker(journal, *tag, depth);
  while (const auto head = walker.Next()) {
    if (!TakeRecord(files, *head, walker)) return std::nullopt;
  }
  return files;
}

bool KeepsWhatIsCutOff(const JournaledFile& known, std::uint64_t size) {
  std::vector<KeptBytes> kept = known.kept;
  std::sort(kept.begin(), kept.end(),
            [](const KeptBytes& a, const KeptBytes& b) { return a.place < b.place; });
  for (const KeptBytes& bytes : kept) {
    if (bytes.place <= size) size = std::max(size, bytes.place + bytes.size);
  }
  return size >= known.size;
}

std::optional<std::uint64_t> IdentityBefore(File& file, const JournaledFile& known, File& journal) {
  std::uint64_t sum = known.size;
  for (const std::uint64_t place : SampledPages(known.size)) {
    Bytes page(std::min<std::uint64_t>(kPageSize, known.size - place), 0);
    // What has been cut off is in the journal.
    if (!file.ReadAt(place, page) || !OverlayKept(place, page, known, journal)) return std::nullopt;
    sum = Checksum(page, sum);
  }
  return sum;
}

std::optional<std::uint64_t> IdentityNow(File& file) {
  JournaledFile asItStands;
  asItStands.size = file.Size();
  return IdentityBefore(file, asItStands, file);
}

}  // namespace quillomar
