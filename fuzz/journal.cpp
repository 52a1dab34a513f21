// Journals: whatever stands in one, with sound checksums or not, looking at it and restoring from
// it is safe; only files that it names change, and those to exactly what it says.
#include "journal/journal_format.h"

#include <algorithm>

#include "fuzz_target.h"
#include "journal/journal_folder.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr const char* kState = "/state";
constexpr const char* kLeft = "/state/0.journal";
constexpr const char* kSaved = "/state/0.saved";
constexpr const char* kPaths[] = {"/d/a", "/d/b", "/d/c"};
constexpr std::uint64_t kTag = 0x5A17;

Bytes Numbered(std::size_t size, std::size_t seed) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 31 / 7 + seed);
  return bytes;
}

class Disc {
 public:
  Disc() {
    files_.Put(kPaths[0], Numbered(9000, 1));
    files_.Put(kPaths[1], Numbered(100, 2));
    files_.Put(kPaths[2], Numbered(3000, 3));
  }

  // Makes checksums, identities and times right, so that what the records say counts.
  Bytes Mended(ByteSpan input) {
    Bytes journal = MakeJournalHeader(kTag);
    std::vector<std::size_t> fileRecords;
    std::size_t place = kJournalHeaderSize;
    for (; place + kRecordHeadSize <= input.size() && fileRecords.size() < 8;) {
      RecordHead head{static_cast<RecordKind>(input[place + kRecordKindOffset] % 5),
                      input[place + kRecordFileOffset],
                      GetLittle32(input, place + kRecordLengthOffset) % 8192,
                      GetLittle64(input, place + kRecordValueOffset)};
      place += kRecordHeadSize;
      head.length =
          static_cast<std::uint32_t>(std::min<std::size_t>(head.length, input.size() - place));
      const ByteSpan said = input.subspan(place, head.length);
      Bytes payload(said.begin(), said.end());
      place += head.length;
      if (head.kind == RecordKind::kClosing && payload.size() == kClosingTimeSize) {
        const auto stamp = files_.Stamp(kPaths[head.file % std::size(kPaths)]);
        PutLittle64(payload, 0, static_cast<std::uint64_t>(stamp->modified));
      }
      if (head.kind == RecordKind::kFile) fileRecords.push_back(journal.size());
      const Bytes record = MakeRecord(kTag, head, payload);
      journal.insert(journal.end(), record.begin(), record.end());
    }
    MendIdentities(journal, fileRecords);
    return journal;
  }

  // Restores from a journal that was left, or takes back the transaction of a saved one.
  void Restore(const char* path, const Bytes& journal) {
    files_.Put(path, journal);
    Reporter reporter(files_);
    JournalFolder folder(files_, reporter, kState);
    const Known known = Read(path);
    const std::vector<std::string> names = folder.FilesOf(path);
    for (const char* const each : kPaths) {
      const bool named = std::find(names.begin(), names.end(), each) != names.end();
      const bool found =
          path == kLeft ? !folder.Left({each}).empty() : folder.Saved({each}).has_value();
      Require(named || !found);
    }
    const Result restored = path == kLeft ? folder.Restore(path) : folder.TakeBack(path);
    for (const char* const each : kPaths) {
      const JournaledFile* const file = Named(known, each);
      if (Failed(restored) || file == nullptr) {
        Require(Holds(each, Disc().files_.Content(each)));
      } else if (!file->created) {
        Require(Holds(each, Wanted(*file, each, journal)));
      }
    }
    // What was restored is settled.
    Require(Failed(restored) || !files_.Exists(kLeft));
  }

 private:
  using Known = std::vector<JournaledFile>;

  Known Read(const char* path) {
    const auto journal = files_.Open(path, OpenMode::kReadOnly);
    return ReadJournal(*journal).value_or(Known());
  }

  static const JournaledFile* Named(const Known& known, const std::string& path) {
    const auto found = std::find_if(known.begin(), known.end(),
                                    [&](const JournaledFile& file) { return file.path == path; });
    return found == known.end() ? nullptr : &*found;
  }

  bool Holds(const char* path, const Bytes& content) {
    return files_.Exists(path) && files_.Content(path) == content;
  }

  static Bytes Wanted(const JournaledFile& file, const char* path, const Bytes& journal) {
    Bytes content = Disc().files_.Content(path);
    content.resize(file.size);
    for (const KeptBytes& kept : file.kept) {
      std::copy_n(journal.begin() + static_cast<std::ptrdiff_t>(kept.journal), kept.size,
                  content.begin() + static_cast<std::ptrdiff_t>(kept.place));
    }
    return content;
  }

  void MendIdentities(Bytes& journal, const std::vector<std::size_t>& fileRecords) {
    files_.Put(kLeft, journal);
    const Known known = Read(kLeft);
    const auto file = files_.Open(kLeft, OpenMode::kReadOnly);
    for (std::size_t i = 0; i < known.size() && i < fileRecords.size(); ++i) {
      const std::size_t place = fileRecords[i];
      const auto target = files_.Open(known[i].path, OpenMode::kReadOnly);
      const auto identity = target ? IdentityBefore(*target, known[i], *file) : std::nullopt;
      if (!identity) continue;
      const RecordHead head{RecordKind::kFile, static_cast<std::uint32_t>(i),
                            GetLittle32(journal, place + kRecordLengthOffset), known[i].size};
      const Bytes record =
          MakeRecord(kTag, head, MakeFilePayload(known[i].created, *identity, known[i].path));
      std::copy(record.begin(), record.end(), journal.begin() + static_cast<std::ptrdiff_t>(place));
    }
    (void)files_.Remove(kLeft);
  }

  test::MemoryFileSystem files_;
};

void Add(Bytes& journal, RecordKind kind, std::uint32_t file, std::uint64_t value,
         const Bytes& payload) {
  const Bytes record =
      MakeRecord(kTag, {kind, file, static_cast<std::uint32_t>(payload.size()), value}, payload);
  journal.insert(journal.end(), record.begin(), record.end());
}

}  // namespace

std::vector<Bytes> Seeds() {
  Bytes left = MakeJournalHeader(kTag);
  Add(left, RecordKind::kFile, 0, 9000, MakeFilePayload(false, 7, kPaths[0]));
  Add(left, RecordKind::kBytes, 0, 2048, Numbered(300, 4));
  Add(left, RecordKind::kBytes, 0, 8900, Numbered(100, 5));
  Bytes cutOff = MakeJournalHeader(kTag);
  Add(cutOff, RecordKind::kFile, 0, 150, MakeFilePayload(false, 7, kPaths[1]));
  Add(cutOff, RecordKind::kFile, 1, 2000, MakeFilePayload(false, 7, kPaths[2]));
  Add(cutOff, RecordKind::kBytes, 0, 90, Numbered(60, 6));
  Bytes saved = MakeJournalHeader(kTag);
  Add(saved, RecordKind::kFile, 0, 3000, MakeFilePayload(false, 7, kPaths[2]));
  Add(saved, RecordKind::kFile, 1, 0, MakeFilePayload(true, 0, kPaths[1]));
  Add(saved, RecordKind::kBytes, 0, 0, Numbered(40, 8));
  Add(saved, RecordKind::kClosing, 0, 3000, Bytes(kClosingTimeSize));
  Add(saved, RecordKind::kClosing, 1, 100, Bytes(kClosingTimeSize));
  return {left, cutOff, saved};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillomar;
  const Bytes asFound(data, data + size);
  for (const char* const path : {fuzz::kLeft, fuzz::kSaved}) {
    fuzz::Disc().Restore(path, asFound);
    fuzz::Disc disc;
    disc.Restore(path, disc.Mended(asFound));
  }
  return 0;
}
