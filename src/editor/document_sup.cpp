// .sup files in place of VOBs.

#include <algorithm>

#include "base/format.h"
#include "editor/document.h"

namespace quillomar {

Result Document::OpenSup(const std::string& path) {
  auto sup = LoadSup(session_.files, path, session_.reporter, session_.limit);
  if (!sup) return Result::kFailed;
  sup_ = std::move(*sup);
  supPath_ = path;
  NoteStamps();
  const std::lock_guard lock(mutex_);
  units_.assign(sup_.units.begin(), sup_.units.end());
  standard_ = sup_.standard;
  highestStream_ = units_.empty() ? -1 : 0;
  return Result::kDone;
}

Result Document::AttachIfo(const std::string& path) {
  const std::string before = ifo_.Loaded() ? ifo_.Path() : "";
  const auto refuse = [&](const std::string& text) {
    session_.reporter.ReportError(text);
    ifo_.Close();
    if (!before.empty()) (void)ifo_.Load(before);
    return Result::kFailed;
  };
  if (Failed(ifo_.Load(path))) return refuse("Couldn't read " + path);
  CellMap cells;
  const int chains = ifo_.ProgramChains(0);
  for (int pgc = 1; pgc <= chains; ++pgc) {
    const auto clut = ifo_.Clut(0, pgc);
    if (clut) cells.cluts.push_back({*clut, *clut, 0, pgc});
  }
  if (cells.cluts.empty()) return refuse(path + " holds no colors");
  history_.Clear();
  cells_ = std::move(cells);
  NoteStamps();
  UseClut(0);
  return Result::kDone;
}

void Document::UseClut(int index) {
  for (const OwnedUnit& unit : Owned()) unit->clut = index;
}

Result Document::SaveIntoSup() {
  const std::unique_ptr<WriteTransaction> transaction = session_.transactions->Begin();
  const OwnedUnits units = Owned();
  const bool any = std::any_of(units.begin(), units.end(),
                               [](const OwnedUnit& unit) { return unit->state.modified; });
  std::optional<SupPositions> positions;
  if (any) {
    positions = SaveSup(sup_.file, units, *transaction, Context());
    if (!positions) return Result::kFailed;
  }
  const Result cluts = SaveCluts(*transaction);
  if (Failed(transaction->Commit())) return Result::kFailed;
  NoteStamps();
  history_.Clear();
  if (!Failed(cluts)) MarkClutsSaved();
  if (positions && Failed(TakeSavedSup(*sup_.file, units, *positions, Context()))) {
    return Result::kFailed;
  }
  return cluts;
}

Result Document::ExportSup(const UnitList& units, const std::string& path) {
  if (InSupMode() && path == supPath_) {
    // The positions of its records would no longer be those of the units held.
    session_.reporter.ReportError("This file is open. Use \"Save all modifications\" to save it.");
    return Result::kFailed;
  }
  const std::unique_ptr<WriteTransaction> transaction = session_.transactions->Begin();
  const std::shared_ptr<File> file = transaction->OpenOrCreate(path);
  if (!file) {
    session_.reporter.ReportError("Couldn't open file for writing!");
    return Result::kFailed;
  }
  const auto positions = SaveSup(file, OwnedOf(units), *transaction, Context());
  return positions ? transaction->Commit() : Result::kFailed;
}

}  // namespace quillomar
