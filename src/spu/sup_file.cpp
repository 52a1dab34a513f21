#include "spu/sup_file.h"

#include <algorithm>
#include <array>

#include "base/format.h"
#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"
#include "spu/reload.h"
#include "spu/rooms.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

constexpr int kToleratedSpareBytes = 1;

struct SupRecord {
  std::uint32_t pts = 0;
  Bytes unit;
};

enum class ReadOutcome { kRecord, kNoRecord, kUnreadable };

ReadOutcome ReadBytes(File& file, std::uint64_t position, std::span<std::uint8_t> out) {
  const auto count = file.ReadAt(position, out);
  if (!count) return ReadOutcome::kUnreadable;
  return *count == out.size() ? ReadOutcome::kRecord : ReadOutcome::kNoRecord;
}

// A record cut off by the end of the file counts as none.
ReadOutcome ReadRecord(File& file, std::uint64_t position, SupRecord& record) {
  std::array<std::uint8_t, kSupHeaderSize + kSpuHeaderSize> header{};
  const ReadOutcome headerRead = ReadBytes(file, position, header);
  if (headerRead != ReadOutcome::kRecord) return headerRead;
  if (GetShort(header, kSupMarkOffset) != kSupMark) return ReadOutcome::kNoRecord;
  record.pts = SwapInt(GetInt(header, kSupPtsOffset));
  record.unit.resize(GetShort(header, kSupHeaderSize + kSpuSizeOffset));
  return ReadBytes(file, position + kSupHeaderSize, record.unit);
}

// Null for a unit that does not parse.
std::shared_ptr<SubpictureUnit> MakeUnit(SupRecord& record, int number, const SpuContext& context) {
  auto unit = std::make_shared<SubpictureUnit>();
  unit->state.bytes = std::move(record.unit);
  unit->state.pts = unit->ptsAsRead = record.pts;
  unit->state.freeRoom = kSupFreeRoom;
  unit->globalTime = record.pts;
  unit->number = unit->numberInStream = number;
  unit->complete = true;
  if (Failed(ParseControlSequences(*unit, 0, 0, context))) return nullptr;
  SelectControlSequence(*unit, unit->currentSequence);
  return unit;
}

// What lies behind the last record is often the rest of a longer file: worth a line in the log.
void NoteEnd(ReadOutcome outcome, std::uint64_t position, std::uint64_t size,
             const std::string& path, Reporter& reporter) {
  if (outcome == ReadOutcome::kUnreadable) {
    reporter.ReportError(Format("Failed to read %s at byte %llu", path.c_str(),
                                static_cast<unsigned long long>(position)));
  } else if (position < size) {
    reporter.LogLine(Format("No whole subpic at byte %llu of %s, ignoring the rest of the file",
                            static_cast<unsigned long long>(position), path.c_str()));
  }
}

void ReadUnits(SupFile& sup, const std::string& path, const SpuContext& context) {
  std::uint64_t position = 0;
  SupRecord record;
  ReadOutcome outcome{};
  while ((outcome = ReadRecord(*sup.file, position, record)) == ReadOutcome::kRecord) {
    const std::uint64_t next = position + kSupHeaderSize + record.unit.size();
    const int number = static_cast<int>(sup.units.size()) + 1;
    if (auto unit = MakeUnit(record, number, context)) {
      unit->supPosition = static_cast<std::int64_t>(position);
      sup.units.push_back(std::move(unit));
    }
    position = next;
  }
  NoteEnd(outcome, position, sup.file->Size(), path, context.reporter);
}

VideoStandard StandardOf(const SupUnits& units) {
  const bool taller = std::any_of(units.begin(), units.end(), [](const auto& unit) {
    return unit->state.area.ey > kLastNtscEnd;
  });
  return taller ? VideoStandard::kPal : VideoStandard::kNtsc;
}

// The unit's bytes without its spare room; nothing when they cannot be read again.
std::optional<Bytes> CompactedBytes(const SubpictureUnit& unit, const SpuContext& context) {
  SubpictureUnit copy;
  copy.state = unit.state;
  copy.packs = unit.packs;
  copy.number = unit.number;
  copy.complete = unit.complete;
  // The spare room is taken from the bytes as they stand: since the last decode edits may have
  // hidden rows or changed the codes.
  copy.state.decoded = false;
  if (Failed(ParseControlSequences(copy, 0, 0, context))) return std::nullopt;
  const bool decoded = !Failed(DecodeBitmap(copy, context));
  if (decoded && !CodesBeginInHeader(copy.state) && copy.state.spareRoom > kToleratedSpareBytes) {
    // Where the sequences cannot be moved the unit is written as it is.
    static_cast<void>(ShiftControlSequences(copy, -copy.state.spareRoom));
  }
  return std::move(copy.state.bytes);
}

std::optional<Bytes> MakeRecord(const SubpictureUnit& unit, const SpuContext& context) {
  const auto bytes = CompactedBytes(unit, context);
  if (!bytes) return std::nullopt;
  Bytes record(kSupHeaderSize);
  PutShort(record, kSupMarkOffset, kSupMark);
  PutInt(record, kSupPtsOffset, SwapInt(unit.state.pts));
  record.insert(record.end(), bytes->begin(), bytes->end());
  return record;
}

}  // namespace

std::optional<SupFile> LoadSup(FileSystem& files, const std::string& path, Reporter& reporter,
                               ReportLimit& limit) {
  SupFile sup;
  sup.file = files.Open(path, OpenMode::kExclusiveWrite);
  sup.canWrite = sup.file != nullptr;
  if (!sup.canWrite) sup.file = files.Open(path, OpenMode::kReadOnly);
  if (!sup.file) return std::nullopt;
  if (!sup.canWrite) reporter.ReportReadOnly(path);
  // Only when all are read is the frame's height known: the units are parsed for the taller frame
  // and then cut.
  ReadUnits(sup, path, {reporter, limit, VideoStandard::kPal});
  sup.standard = StandardOf(sup.units);
  for (const auto& unit : sup.units) {
    SpuState& state = unit->state;
    state.height = std::min(state.height, state.area.LinesInFrame(FrameHeight(sup.standard)));
  }
  return sup;
}

std::optional<SupPositions> SaveSup(const std::shared_ptr<File>& file, const SupUnits& units,
                                    WriteTransaction& transaction, const SpuContext& context) {
  std::vector<Bytes> records;
  for (const auto& unit : units) {
    auto record = MakeRecord(*unit, context);
    if (!record) return std::nullopt;
    records.push_back(std::move(*record));
  }
  SupPositions positions;
  std::uint64_t position = 0;
  for (const Bytes& record : records) {
    positions.push_back(static_cast<std::int64_t>(position));
    if (Failed(transaction.Write(file, position, record))) {
      context.reporter.ReportError(
          Format("Failed to write subpic %d of the .sup file", static_cast<int>(positions.size())));
      return std::nullopt;
    }
    position += record.size();
  }
  return positions;
}

Result TakeSavedSup(File& file, const SupUnits& units, const SupPositions& positions,
                    const SpuContext& context) {
  Result result = Result::kDone;
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i]->supPosition = positions.at(i);
    if (Failed(ReloadSup(*units[i], file, context))) result = Result::kFailed;
  }
  return result;
}

Result ReloadSup(SubpictureUnit& unit, File& file, const SpuContext& context) {
  SupRecord record;
  const auto position = static_cast<std::uint64_t>(unit.supPosition);
  if (unit.supPosition < 0 || ReadRecord(file, position, record) != ReadOutcome::kRecord) {
    return ReportReloadFailure(context);
  }
  return TakeBytesAgain(unit, std::move(record.unit), kSupFreeRoom, context);
}

}  // namespace quillomar
