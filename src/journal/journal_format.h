#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/file.h"

// A journal holds what has to be put back so that some files are again as they were before a
// transaction changed them. It only ever grows: a header, then records one behind the other. All
// numbers are little-endian, checksums those of base/checksum.h.
//
//   header
//    0  8    "QLMJRNL" and a line break
//    8  u32  version, 1
//   12  u32  0
//   16  u64  tag, a random number that every record of this journal repeats
//   24  u64  checksum of the 24 bytes before it
//   32  ...  records
//
//   record
//    0  u32  "QREC"
//    4  u32  kind
//    8  u64  the journal's tag
//   16  u32  number of the file, from 0 in the order of the file records
//   20  u32  bytes of payload
//   24  u64  value
//   32  u64  checksum of the 32 bytes before it and of the payload
//   40  ...  payload
//
// A file record stands before all others of its file. Its value is the file's size in bytes before
// the transaction, its payload:
//
//    0  u32  1 when the transaction creates the file, else 0
//    4  u64  identity: the checksum of the sampled sectors as they were before the transaction
//   12  ...  path, UTF-8
//
// A bytes record holds bytes of a file as they were before the transaction; its value is their
// place in the file. No byte stands in two records.
//
// A closing record says how a committed transaction left a file, for the question whether it has
// been changed since. Its value is the size, its payload the time of the last change as i64,
// nanoseconds since the Unix epoch.
//
// A record whose checksum fails ends the journal: it was being written when the program or the
// machine stopped, and the bytes it speaks of had not been touched yet.
namespace quillomar {

inline constexpr char kJournalMagic[] = "QLMJRNL\n";
inline constexpr std::size_t kJournalMagicSize = 8;
inline constexpr std::uint32_t kJournalVersion = 1;
inline constexpr std::size_t kJournalVersionOffset = 8;
inline constexpr std::size_t kJournalTagOffset = 16;
inline constexpr std::size_t kJournalHeaderSumOffset = 24;
inline constexpr std::size_t kJournalHeaderSize = 32;

inline constexpr std::uint32_t kRecordMark = 0x43455251;  // "QREC"
inline constexpr std::size_t kRecordKindOffset = 4;
inline constexpr std::size_t kRecordTagOffset = 8;
inline constexpr std::size_t kRecordFileOffset = 16;
inline constexpr std::size_t kRecordLengthOffset = 20;
inline constexpr std::size_t kRecordValueOffset = 24;
inline constexpr std::size_t kRecordSumOffset = 32;
inline constexpr std::size_t kRecordHeadSize = 40;

inline constexpr std::size_t kFileCreatedOffset = 0;
inline constexpr std::size_t kFileIdentityOffset = 4;
inline constexpr std::size_t kFilePathOffset = 12;
inline constexpr std::size_t kClosingTimeSize = 8;

// Most bytes of a payload.
inline constexpr std::size_t kMostPayload = std::size_t{1} << 20;
// A disc's title set has eleven VOBs, its IFO and the backup.
inline constexpr std::uint32_t kMostJournalFiles = 64;
// The unit in which files are changed and their old bytes kept.
inline constexpr std::size_t kPageSize = 2048;
// Pages that make up a file's identity, evenly spread over it.
inline constexpr std::uint64_t kSampledPages = 16;

enum class RecordKind : std::uint32_t { kFile = 1, kBytes = 2, kClosing = 3 };

struct RecordHead {
  RecordKind kind = RecordKind::kFile;
  std::uint32_t file = 0;
  std::uint32_t length = 0;  // bytes of payload
  std::uint64_t value = 0;
};

[[nodiscard]] std::uint32_t GetLittle32(ByteSpan bytes, std::size_t offset);
[[nodiscard]] std::uint64_t GetLittle64(ByteSpan bytes, std::size_t offset);
void PutLittle32(Bytes& bytes, std::size_t offset, std::uint32_t value);
void PutLittle64(Bytes& bytes, std::size_t offset, std::uint64_t value);

[[nodiscard]] Bytes MakeJournalHeader(std::uint64_t tag);
// A whole record: head, checksum and payload.
[[nodiscard]] Bytes MakeRecord(std::uint64_t tag, const RecordHead& head, ByteSpan payload);
[[nodiscard]] Bytes MakeFilePayload(bool created, std::uint64_t identity, const std::string& path);

// First bytes of the pages that make up the identity of a file of that size.
[[nodiscard]] std::vector<std::uint64_t> SampledPages(std::uint64_t size);

}  // namespace quillomar
