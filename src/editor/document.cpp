#include "editor/document.h"

#include <algorithm>

#include "base/format.h"
#include "dvd/vob_name.h"
#include "spu/write_back.h"

namespace quillomar {

Document::Document(Session& session)
    : session_(session),
      set_(session.files, session.reporter),
      ifo_(session.files, session.reporter) {}

void Document::Reset() {
  history_.Clear();
  set_.Reset();
  sup_ = {};
  ifo_.Close();
  cells_ = {};
  results_ = {};
  for (auto& gatherer : gatherers_) gatherer.reset();
  streamCounts_.fill(0);
  session_.limit.Reset();
  const std::lock_guard lock(mutex_);
  units_.clear();
  standard_ = VideoStandard::kUnknown;
  highestStream_ = -1;
}

void Document::Prepare() {
  set_.Validate();
  if (set_.Empty()) return;
  set_.LayOut();
  const std::string& firstVob = set_.Files().front().path;
  const std::string path = FindIgnoringCase(session_.files, IfoPathOfVob(firstVob));
  if (Failed(ifo_.Load(path))) {
    session_.reporter.LogLine(
        Format("Couldn't read %s, the colors of the subpics are unknown", path.c_str()));
  } else {
    cells_ = BuildCellMap(ifo_, firstVob);
  }
  NoteStamps();
}

void Document::Scan(std::optional<std::vector<std::uint32_t>> lbas) {
  const bool fast = lbas.has_value();
  Scanner scanner(set_, *this, session_.reporter, session_.job);
  scanner.Scan({session_.preferences.alertIfClosedCaptions != 0, std::move(lbas)}, results_);
  if (fast) {
    set_.SetOpenedFromCache();
    set_.ClearFullTitleDomain();
  }
  for (auto& gatherer : gatherers_) gatherer.reset();
}

UnitList Document::Units() const {
  const std::lock_guard lock(mutex_);
  return {units_.begin(), units_.end()};
}

OwnedUnits Document::Owned() const {
  const std::lock_guard lock(mutex_);
  return units_;
}

int Document::UnitCount() const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(units_.size());
}

std::vector<Vcid> Document::Vcids() const {
  const std::lock_guard lock(mutex_);
  std::vector<Vcid> vcids;
  for (const OwnedUnit& unit : units_) {
    const bool asBefore = !vcids.empty() && vcids.back() == unit->vcid;
    if (asBefore || std::find(vcids.begin(), vcids.end(), unit->vcid) != vcids.end()) continue;
    vcids.push_back(unit->vcid);
  }
  return vcids;
}

std::optional<std::uint32_t> Document::NextPts(const SubpictureUnit& unit) const {
  const std::lock_guard lock(mutex_);
  // Numbers count from 1 in the order of the list.
  for (auto i = static_cast<std::size_t>(unit.number); i < units_.size(); ++i) {
    const SubpictureUnit& other = *units_[i];
    if (other.stream == unit.stream && other.numberInStream == unit.numberInStream + 1)
      return other.state.pts;
  }
  return std::nullopt;
}

VideoStandard Document::Standard() const {
  const std::lock_guard lock(mutex_);
  return standard_;
}

int Document::HighestStream() const {
  const std::lock_guard lock(mutex_);
  return highestStream_;
}

SpuContext Document::Context() {
  return {session_.reporter, session_.limit, Standard()};
}

OwnedUnits Document::OwnedOf(const UnitList& units) {
  OwnedUnits owned;
  for (const UnitPointer& unit : units) {
    owned.push_back(std::const_pointer_cast<SubpictureUnit>(unit));
  }
  return owned;
}

GatherResult Document::TakePack(SectorView pack, const PackContext& context) {
  {
    // A stream is there as soon as it has packs, even if no unit can be made of them.
    const std::lock_guard lock(mutex_);
    highestStream_ = std::max(highestStream_, context.stream);
  }
  auto& gatherer = gatherers_.at(static_cast<std::size_t>(context.stream));
  if (!gatherer) gatherer = std::make_unique<SpuGatherer>(set_);
  return gatherer->GatherPack(pack, context, Context());
}

bool Document::CompleteUnit(int stream, std::int64_t timeOffset) {
  auto& gatherer = gatherers_.at(static_cast<std::size_t>(stream));
  auto unit = std::make_shared<SubpictureUnit>(std::move(gatherer->Unit()));
  gatherer->Reset();
  if (unit->packs.empty()) return false;
  unit->globalTime = unit->state.pts + timeOffset;
  unit->clut = cells_.ClutOf(unit->vcid);
  unit->numberInStream = ++streamCounts_.at(static_cast<std::size_t>(stream));
  const std::lock_guard lock(mutex_);
  unit->number = static_cast<int>(units_.size()) + 1;
  units_.push_back(std::move(unit));
  return true;
}

void Document::DropUnit(int stream) {
  gatherers_.at(static_cast<std::size_t>(stream))->Reset();
}

void Document::StandardFound(VideoStandard standard) {
  const std::lock_guard lock(mutex_);
  standard_ = standard;
}

bool Document::Modified() const {
  const UnitList units = Units();
  const auto unitModified = [](const UnitPointer& unit) { return unit->state.modified; };
  const auto clutModified = [](const ClutRecord& clut) { return clut.Modified(); };
  return std::any_of(units.begin(), units.end(), unitModified) ||
         std::any_of(cells_.cluts.begin(), cells_.cluts.end(), clutModified);
}

Result Document::Save(JobControl& control) {
  if (Failed(CheckFiles())) return Result::kFailed;
  return InSupMode() ? SaveIntoSup() : SaveVobs(control);
}

std::vector<std::string> Document::OpenedPaths() const {
  if (InSupMode()) return {supPath_};
  std::vector<std::string> paths;
  for (const VobFile& vob : set_.Files()) paths.push_back(vob.path);
  return paths;
}

std::vector<std::string> Document::JournaledPaths() const {
  std::vector<std::string> paths = OpenedPaths();
  std::string ifo = ifo_.Loaded() ? ifo_.Path() : "";
  if (ifo.empty() && !set_.Empty()) {
    ifo = FindIgnoringCase(session_.files, IfoPathOfVob(set_.Files().front().path));
  }
  if (ifo.empty()) return paths;
  paths.push_back(ifo);
  paths.push_back(FindIgnoringCase(session_.files, BackupPathOfIfo(ifo)));
  return paths;
}

void Document::ForbidSaving() {
  set_.ForbidSaving();
  sup_.canWrite = false;
}

void Document::NoteStamps() {
  stamps_.clear();
  for (const std::string& path : JournaledPaths()) stamps_[path] = session_.files.Stamp(path);
}

Result Document::CheckFiles() {
  const auto refuse = [this](const char* text, const std::string& path) {
    session_.reporter.ReportError(path + text);
    return Result::kFailed;
  };
  for (const std::string& path : JournaledPaths()) {
    if (session_.files.Stamp(path) == stamps_[path]) continue;
    return refuse(
        " has been changed by something else since it was opened.\n"
        "Nothing was written. Open the files again.",
        path);
  }
  for (const std::string& path : OpenedPaths()) {
    if (session_.files.MayWrite(path)) continue;
    return refuse(" can no longer be written.\nNothing was changed.", path);
  }
  return Result::kDone;
}

std::uint64_t Document::IfoBytes() const {
  constexpr std::uint64_t kKib = 1024;
  constexpr std::uint64_t kCopies = 2;
  return ifo_.SizeKib() * kKib * kCopies;
}

Result Document::ReserveForSave(WriteTransaction& transaction) {
  std::uint64_t bytes = IfoBytes();
  for (const OwnedUnit& unit : Owned()) {
    if (unit->state.modified) bytes += unit->packs.size() * kSectorSize;
  }
  return transaction.Reserve(bytes);
}

Result Document::SaveVobs(JobControl& control) {
  const std::unique_ptr<WriteTransaction> transaction = session_.transactions->Begin();
  if (Failed(ReserveForSave(*transaction))) return Result::kFailed;
  OwnedUnits saved;
  const Result cluts = SaveCluts(*transaction);
  const Result units = SaveUnits(*transaction, control, saved);
  if (Failed(transaction->Commit())) return Result::kFailed;
  NoteStamps();
  if (!Failed(cluts)) MarkClutsSaved();
  history_.Clear();
  for (const OwnedUnit& unit : saved) (void)ReloadUnit(*unit);
  return Failed(cluts) ? cluts : units;
}

void Document::MarkClutsSaved() {
  for (ClutRecord& clut : cells_.cluts) clut.saved = clut.entries;
}

Result Document::SaveCluts(WriteTransaction& transaction) {
  bool any = false;
  Result result = Result::kDone;
  for (const ClutRecord& clut : cells_.cluts) {
    if (!clut.Modified()) continue;
    any = true;
    if (Failed(ifo_.SetClut(clut.languageUnit, clut.pgc, clut.entries))) result = Result::kFailed;
  }
  if (!any) return Result::kDone;
  if (!Failed(result)) result = ifo_.Write(transaction);
  if (Failed(result)) {
    session_.reporter.ReportError(
        Format("Couldn't write the colors to %s or its backup", ifo_.Path().c_str()));
  }
  return result;
}

Result Document::SaveUnits(WriteTransaction& transaction, JobControl& control, OwnedUnits& saved) {
  const OwnedUnits units = Owned();
  Result result = Result::kDone;
  for (std::size_t i = 0; i < units.size(); ++i) {
    control.percent = static_cast<int>(i * 100 / units.size());
    if (!units[i]->state.modified) continue;
    if (Failed(WriteBack(*units[i], set_, transaction, Context()))) {
      result = Result::kFailed;
      if (transaction.Broken()) break;
    } else {
      saved.push_back(units[i]);
    }
  }
  return result;
}

Result Document::ReloadUnit(SubpictureUnit& unit) {
  return InSupMode() ? ReloadSup(unit, *sup_.file, Context()) : Reload(unit, set_, Context());
}

const std::string& Document::Path() const {
  return InSupMode() ? supPath_ : set_.Files().front().path;
}

ClutRecord* Document::UnrecordedClut(int languageUnit, int pgc) {
  const auto found = std::find_if(
      cells_.cluts.begin(), cells_.cluts.end(),
      [&](const ClutRecord& clut) { return clut.languageUnit == languageUnit && clut.pgc == pgc; });
  if (found != cells_.cluts.end()) return &*found;
  if (!ifo_.Loaded()) return nullptr;
  const auto clut = ifo_.Clut(languageUnit, pgc);
  if (!clut) return nullptr;
  cells_.cluts.push_back({*clut, *clut, languageUnit, pgc});
  return &cells_.cluts.back();
}

void Document::RevertCluts() {
  for (std::size_t i = 0; i < cells_.cluts.size(); ++i) {
    ClutRecord& clut = history_.OpenClut(static_cast<int>(i));
    clut.entries = clut.saved;
  }
}

}  // namespace quillomar
