#include "journal/journal_format.h"

#include <algorithm>
#include <iterator>

#include "base/checksum.h"

namespace quillomar {
namespace {

constexpr int kBitsPerByte = 8;

void PutLittle(Bytes& bytes, std::size_t offset, std::uint64_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) {
    bytes.at(offset + i) = static_cast<std::uint8_t>(value >> (kBitsPerByte * i));
  }
}

std::uint64_t GetLittle(ByteSpan bytes, std::size_t offset, std::size_t width) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < width && offset + i < bytes.size(); ++i) {
    value |= std::uint64_t{bytes[offset + i]} << (kBitsPerByte * i);
  }
  return value;
}

}  // namespace

std::uint32_t GetLittle32(ByteSpan bytes, std::size_t offset) {
  return static_cast<std::uint32_t>(GetLittle(bytes, offset, sizeof(std::uint32_t)));
}

std::uint64_t GetLittle64(ByteSpan bytes, std::size_t offset) {
  return GetLittle(bytes, offset, sizeof(std::uint64_t));
}

void PutLittle32(Bytes& bytes, std::size_t offset, std::uint32_t value) {
  PutLittle(bytes, offset, value, sizeof value);
}

void PutLittle64(Bytes& bytes, std::size_t offset, std::uint64_t value) {
  PutLittle(bytes, offset, value, sizeof value);
}

Bytes MakeJournalHeader(std::uint64_t tag) {
  Bytes header(kJournalHeaderSize, 0);
  std::copy_n(std::begin(kJournalMagic), kJournalMagicSize, header.begin());
  PutLittle32(header, kJournalVersionOffset, kJournalVersion);
  PutLittle64(header, kJournalTagOffset, tag);
  const auto sum = Checksum(ByteSpan(header).first(kJournalHeaderSumOffset));
  PutLittle64(header, kJournalHeaderSumOffset, sum);
  return header;
}

Bytes MakeRecord(std::uint64_t tag, const RecordHead& head, ByteSpan payload) {
  Bytes record(kRecordHeadSize, 0);
  PutLittle32(record, 0, kRecordMark);
  PutLittle32(record, kRecordKindOffset, static_cast<std::uint32_t>(head.kind));
  PutLittle64(record, kRecordTagOffset, tag);
  PutLittle32(record, kRecordFileOffset, head.file);
  PutLittle32(record, kRecordLengthOffset, static_cast<std::uint32_t>(payload.size()));
  PutLittle64(record, kRecordValueOffset, head.value);
  const auto sum = Checksum(payload, Checksum(ByteSpan(record).first(kRecordSumOffset)));
  PutLittle64(record, kRecordSumOffset, sum);
  record.insert(record.end(), payload.begin(), payload.end());
  return record;
}

Bytes MakeFilePayload(bool created, std::uint64_t identity, const std::string& path) {
  Bytes payload(kFilePathOffset, 0);
  PutLittle32(payload, kFileCreatedOffset, created ? 1 : 0);
  PutLittle64(payload, kFileIdentityOffset, identity);
  payload.insert(payload.end(), path.begin(), path.end());
  return payload;
}

std::vector<std::uint64_t> SampledPages(std::uint64_t size) {
  const std::uint64_t pages = (size + kPageSize - 1) / kPageSize;
  const std::uint64_t count = std::min(pages, kSampledPages);
  std::vector<std::uint64_t> places;
  for (std::uint64_t i = 0; i < count; ++i) {
    // The first and the last page are always among them.
    const std::uint64_t page = count == 1 ? 0 : i * (pages - 1) / (count - 1);
    places.push_back(page * kPageSize);
  }
  return places;
}

}  // namespace quillomar
