#include <algorithm>

#include "dvd/big_endian.h"
#include "dvd/ifo_file.h"
#include "dvd/ifo_layout.h"

namespace quillomar {

std::optional<std::size_t> IfoFile::IfWhole(std::size_t position, std::size_t size) {
  if (Contains(position, size)) return position;
  (void)Allowed("GetInt", position, size - sizeof(std::uint32_t), sizeof(std::uint32_t));
  return std::nullopt;
}

int IfoFile::SearchCount(std::size_t table) {
  if (!Contains(table, kSearchEntrySize)) return 0;
  // No more than the file has room for, whatever the count says.
  const std::size_t room = (Size() - table) / kSearchEntrySize - 1;
  return static_cast<int>(std::min<std::size_t>(GetShort(table, kSearchCountOffset), room));
}

std::optional<std::size_t> IfoFile::SearchTarget(std::size_t table, int number) {
  if (number < 1 || number > SearchCount(table)) return std::nullopt;
  const auto entry = static_cast<std::size_t>(number) * kSearchEntrySize;
  return table + GetInt(table, entry + kSearchTargetOffset);
}

int IfoFile::LanguageUnits() {
  const auto units = Table(IfoTable::kMenuUnits);
  return units ? SearchCount(*units) : 0;
}

std::optional<std::size_t> IfoFile::ChainTable(int languageUnit) {
  if (languageUnit == 0) return Table(IfoTable::kTitleChains);
  const auto units = Table(IfoTable::kMenuUnits);
  const auto unit = units ? SearchTarget(*units, languageUnit) : std::nullopt;
  return unit ? IfWhole(*unit, kSearchEntrySize) : std::nullopt;
}

int IfoFile::ProgramChains(int languageUnit) {
  if (languageUnit == 0 && isManager_) return Table(IfoTable::kFirstPlay) ? 1 : 0;
  const auto table = ChainTable(languageUnit);
  return table ? SearchCount(*table) : 0;
}

std::optional<std::size_t> IfoFile::ProgramChain(int languageUnit, int number) {
  const bool firstPlay = languageUnit == 0 && (number == 0 || (number == 1 && isManager_));
  const auto table = firstPlay ? std::nullopt : ChainTable(languageUnit);
  const auto chain = firstPlay ? Table(IfoTable::kFirstPlay)
                     : table   ? SearchTarget(*table, number)
                               : std::nullopt;
  return chain ? IfWhole(*chain, kPgcSize) : std::nullopt;
}

int IfoFile::Cells(std::size_t programChain) {
  return GetByte(Contents(), programChain + kPgcCellCountOffset);
}

std::optional<std::size_t> IfoFile::CellPlayback(std::size_t programChain, int cell) {
  return CellEntry(programChain, cell, kPgcPlaybackOffset, kCellPlaybackSize);
}

std::optional<std::size_t> IfoFile::CellPosition(std::size_t programChain, int cell) {
  return CellEntry(programChain, cell, kPgcPositionsOffset, kCellPositionSize);
}

std::optional<std::size_t> IfoFile::CellEntry(std::size_t programChain, int cell,
                                              std::size_t tableField, std::size_t entrySize) {
  if (cell < 1 || cell > Cells(programChain)) return std::nullopt;
  const std::uint16_t table = GetShort(programChain, tableField);
  if (table == 0) return std::nullopt;
  return IfWhole(programChain + table + static_cast<std::size_t>(cell - 1) * entrySize, entrySize);
}

std::optional<YCrCbClut> IfoFile::Clut(int languageUnit, int number) {
  const auto chain = ProgramChain(languageUnit, number);
  if (!chain) return std::nullopt;
  return ColoursAt(*chain);
}

YCrCbClut IfoFile::ColoursAt(std::size_t chain) const {
  YCrCbClut clut;
  std::size_t entry = chain + kPgcClutOffset;
  for (YCrCb& colour : clut) {
    colour = {image_[entry + 1], image_[entry + 2], image_[entry + 3]};
    entry += kClutEntrySize;
  }
  return clut;
}

void IfoFile::PutColours(std::size_t chain, const YCrCbClut& clut) {
  std::size_t entry = chain + kPgcClutOffset;
  for (const YCrCb& colour : clut) {
    image_[entry + 1] = colour.y;
    image_[entry + 2] = colour.cr;
    image_[entry + 3] = colour.cb;
    entry += kClutEntrySize;
  }
}

Result IfoFile::SetClut(int languageUnit, int number, const YCrCbClut& clut) {
  const auto chain = ProgramChain(languageUnit, number);
  if (!chain) return Result::kFailed;
  const YCrCbClut before = ColoursAt(*chain);
  PutColours(*chain, clut);
  // In a damaged file they can lie over the pointers that lead to them.
  if (ProgramChain(languageUnit, number) == chain) return Result::kDone;
  PutColours(*chain, before);
  return Result::kFailed;
}

}  // namespace quillomar
