#include "dvd/ifo_file.h"

#include <algorithm>
#include <array>

#include "base/format.h"
#include "base/paths.h"
#include "dvd/big_endian.h"
#include "dvd/ifo_layout.h"
#include "dvd/sector.h"
#include "dvd/vob_name.h"

namespace quillomar {
namespace {

constexpr std::uint64_t kLargestKib = 64 * kKib;
constexpr std::uint32_t kSpareKib = 200;
constexpr std::size_t kNone = 0;  // no header field: that kind of IFO lacks the table

// Header offsets of a table's pointer.
struct TablePointer {
  std::size_t inManager;
  std::size_t inTitleSet;
};

// By table code.
constexpr std::array<TablePointer, 15> kTablePointers = {{
    {kNone, kNone},
    {kIfoMenuUnitsOffset, kIfoTitleSetMenuUnitsOffset},
    {kIfoMenuCellsOffset, kIfoMenuCellsOffset},
    {kIfoMenuVobusOffset, kIfoMenuVobusOffset},
    {kIfoTitleSearchOffset, kNone},
    {kIfoFirstPlayOffset, kNone},
    {kNone, kIfoTitleCellsOffset},
    {kNone, kIfoTitleChainsOffset},
    {kNone, kIfoTitleVobusOffset},
    {kNone, kIfoTimeMapOffset},
    {kIfoMenuUnitsOffset, kNone},
    {kNone, kIfoPartOfTitleOffset},
    {kIfoTextDataOffset, kNone},
    {kIfoParentalOffset, kNone},
    {kIfoAttributesOffset, kNone},
}};

constexpr std::array kManagerTables = {IfoTable::kTitleSearch, IfoTable::kManagerMenuUnits,
                                       IfoTable::kParental,    IfoTable::kTitleSetAttributes,
                                       IfoTable::kTextData,    IfoTable::kMenuCells,
                                       IfoTable::kMenuVobus};
constexpr std::array kTitleSetTables = {
    IfoTable::kPartOfTitle, IfoTable::kTitleChains, IfoTable::kMenuUnits,  IfoTable::kTimeMap,
    IfoTable::kMenuCells,   IfoTable::kMenuVobus,   IfoTable::kTitleCells, IfoTable::kTitleVobus};

std::size_t EndField(IfoTable table) {
  if (table == IfoTable::kMenuVobus || table == IfoTable::kTitleVobus) return kVobuMapEndOffset;
  return table == IfoTable::kTextData ? kTextDataEndOffset : kTableEndOffset;
}

}  // namespace

void IfoFile::Close() {
  file_.reset();
  image_.clear();
  sizeKib_ = 0;
  loaded_ = false;
  error_ = false;
}

Result IfoFile::Load(const std::string& path) {
  Close();
  if (Failed(OpenAndRead(FindIgnoringCase(files_, path)))) {
    Close();
    return Result::kFailed;
  }
  isManager_ = EqualIgnoringCase(SplitPath(path_).title, SplitPath(IfoName(0)).title);
  tableIndex_ = IfoNameIndex(path_).value_or(tableIndex_);
  NormaliseTableEnds();
  loaded_ = true;
  return Result::kDone;
}

Result IfoFile::OpenAndRead(const std::string& path) {
  path_ = path;
  file_ = files_.Open(path, OpenMode::kReadWrite);
  canWrite_ = file_ != nullptr;
  if (!file_) file_ = files_.Open(path, OpenMode::kReadOnly);
  if (!file_) return Result::kFailed;
  const std::uint64_t kib = file_->Size() / kKib;
  if (kib == 0 || kib > kLargestKib) return Result::kFailed;
  sizeKib_ = static_cast<std::uint32_t>(kib);
  image_.assign((sizeKib_ + kSpareKib) * kKib, 0);
  const auto count = file_->ReadAt(0, std::span(image_).first(Size()));
  return count == Size() ? Result::kDone : Result::kFailed;
}

void IfoFile::NormaliseTableEnds() {
  if (isManager_) {
    for (const IfoTable table : kManagerTables) NormaliseTableEnd(table);
  } else {
    for (const IfoTable table : kTitleSetTables) NormaliseTableEnd(table);
  }
}

void IfoFile::NormaliseTableEnd(IfoTable table) {
  const auto position = Table(table);
  if (!position) return;
  const std::size_t field = EndField(table);
  PutInt(*position, field, GetInt(*position, field) & kTableEndMask);
}

bool IfoFile::Contains(std::size_t position, std::size_t size) const {
  return size <= Size() && position <= Size() - size;
}

bool IfoFile::Allowed(const char* operation, std::size_t base, std::size_t offset,
                      std::size_t width) {
  const std::size_t address = base + offset;
  // One byte short of the end: a field that ends on the image's last byte is rejected too.
  if (address >= base && Contains(address, width + 1)) return true;
  reporter_.LogLine(Format("Out-of-bound address in %s %d %d %d", operation,
                           static_cast<int>(address), 0, static_cast<int>(Size()) - 1));
  error_ = true;
  return false;
}

std::uint32_t IfoFile::GetInt(std::size_t base, std::size_t offset) {
  return Allowed("GetInt", base, offset, 4) ? quillomar::GetInt(image_, base + offset) : 0;
}

std::uint16_t IfoFile::GetShort(std::size_t base, std::size_t offset) {
  if (!Allowed("GetShort", base, offset, 2)) return 0;
  return quillomar::GetShort(image_, base + offset);
}

void IfoFile::PutInt(std::size_t base, std::size_t offset, std::uint32_t value) {
  if (Allowed("PutInt", base, offset, 4)) quillomar::PutInt(image_, base + offset, value);
}

void IfoFile::AddInt(std::size_t base, std::size_t offset, std::uint32_t delta) {
  if (Allowed("AddInt", base, offset, 4)) quillomar::AddInt(image_, base + offset, delta);
}

Result IfoFile::SetSizeKib(std::uint32_t size) {
  if (size == 0 || size > image_.size() / kKib) return Result::kFailed;
  sizeKib_ = size;
  return Result::kDone;
}

std::optional<std::size_t> IfoFile::Table(IfoTable table) {
  if (table == IfoTable::kImage) return 0;
  const TablePointer& pointer = kTablePointers.at(static_cast<std::size_t>(table));
  const std::size_t field = isManager_ ? pointer.inManager : pointer.inTitleSet;
  if (field == kNone) return std::nullopt;
  const std::uint32_t value = GetInt(0, field);
  const std::size_t unit = table == IfoTable::kFirstPlay ? 1 : kSectorSize;
  const std::size_t position = value * unit;
  if (value == 0 || position > Size()) return std::nullopt;
  return position;
}

std::optional<std::size_t> IfoFile::TableEnd(IfoTable table) {
  if (table == IfoTable::kImage) return Size() - 1;
  const auto position = Table(table);
  if (!position) return std::nullopt;
  std::uint32_t end = 0;
  if (table == IfoTable::kFirstPlay) {
    const std::uint16_t commands = GetShort(*position, kPgcCommandsOffset);
    end = commands == 0 ? kPgcSize - 1
                        : commands + GetShort(*position, commands + kCommandsEndOffset);
  } else {
    end = GetInt(*position, EndField(table));
  }
  const std::size_t last = *position + (end & kTableEndMask);
  return last < Size() ? std::optional(last) : std::nullopt;
}

Result IfoFile::Write(WriteTransaction& transaction) {
  return loaded_ && canWrite_ ? WriteWithBackup(transaction, file_, path_) : Result::kFailed;
}

Result IfoFile::WriteTo(WriteTransaction& transaction, const std::string& path) {
  if (!loaded_) return Result::kFailed;
  const std::shared_ptr<File> file = transaction.OpenOrCreate(path);
  return file ? WriteWithBackup(transaction, file, path) : Result::kFailed;
}

Result IfoFile::WriteImage(WriteTransaction& transaction, const std::shared_ptr<File>& file) const {
  if (Failed(transaction.SetSize(file, Size()))) return Result::kFailed;
  return transaction.Write(file, 0, Contents());
}

// The backup is opened first: without it the IFO stays as it is.
Result IfoFile::WriteWithBackup(WriteTransaction& transaction, const std::shared_ptr<File>& file,
                                const std::string& path) const {
  const std::shared_ptr<File> backup =
      transaction.OpenOrCreate(FindIgnoringCase(files_, BackupPathOfIfo(path)));
  if (!backup || Failed(WriteImage(transaction, file))) return Result::kFailed;
  return WriteImage(transaction, backup);
}

}  // namespace quillomar
