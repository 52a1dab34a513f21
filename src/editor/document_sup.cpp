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
  if (Failed(ifo_.Load(path))) {
    session_.reporter.ReportError(Format("Couldn't read %s", path.c_str()));
    return Result::kFailed;
  }
  history_.Clear();
  cells_ = {};
  const int chains = ifo_.ProgramChains(0);
  for (int pgc = 1; pgc <= chains; ++pgc) {
    const auto clut = ifo_.Clut(0, pgc);
    if (clut) cells_.cluts.push_back({*clut, *clut, 0, pgc});
  }
  if (!cells_.cluts.empty()) {
    NoteStamps();
    UseClut(0);
    return Result::kDone;
  }
  session_.reporter.ReportError(Format("%s holds no colors", path.c_str()));
  ifo_.Close();
  return Result::kFailed;
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
