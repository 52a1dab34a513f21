// Opening, closing and saving.

#include <algorithm>

#include "base/format.h"
#include "base/paths.h"
#include "dvd/vob_name.h"
#include "editor/editor.h"

namespace quillomar {
namespace {

constexpr const char* kVobFilter = "VOB Files (*.vob)|*.vob||";

bool HasExtension(const std::string& path, const char* extension) {
  return EqualIgnoringCase(SplitPath(path).extension, extension);
}

std::string FolderOf(const std::string& path) {
  return SplitPath(path).folder;
}

// Whether dropped files belong together.
bool SameTitleSet(const std::vector<std::string>& paths) {
  const auto number = [](const std::string& path) {
    return ParseVobTitle(SplitPath(path).title).titleSet.value_or(0);
  };
  return std::all_of(paths.begin(), paths.end(), [&](const std::string& path) {
    return number(path) == number(paths.front());
  });
}

// The first file that cannot be written; the first of all where only a lock or a choice of the user
// forbids it.
std::string ReadOnlyPath(const Document& document, FileSystem& files) {
  const std::vector<std::string> paths = document.OpenedPaths();
  const auto found = std::find_if(paths.begin(), paths.end(),
                                  [&](const std::string& path) { return !files.MayWrite(path); });
  return found == paths.end() ? document.Path() : *found;
}

}  // namespace

bool Editor::MayClose() {
  if (!document_.IsOpen() || !document_.Modified()) return true;
  return session_.reporter.AskYesNo(
      "You have modified some of the subpics or some of the CLUTs... \n"
      "Do you want to close without saving?");
}

void Editor::CloseFiles() {
  video_.Close();
  document_.Reset();
  selection_.Clear();
  last_ = {};
  look_ = {};
  ocr_.ForgetDisc();
  screenMode_.reset();
  UpdateView();
}

// A command that opens something while a job runs stops that job instead.
bool Editor::CloseCheck() {
  if (busy_) {
    Abort();
    return false;
  }
  return MayClose();
}

void Editor::OpenVobs() {
  if (!CloseCheck()) return;
  const auto paths = frontEnd_.ChooseFiles(
      {"Open VOB file", kVobFilter, session_.preferences.lastVobDir, "", true});
  if (paths.empty()) return;
  session_.preferences.lastVobDir = FolderOf(paths.front());
  OpenFiles(paths, false);
}

void Editor::OpenFullDomain() {
  if (!CloseCheck()) return;
  const auto paths =
      frontEnd_.ChooseFiles({"Open Full Domain", kVobFilter, session_.preferences.lastVobDir, ""});
  if (paths.empty()) return;
  session_.preferences.lastVobDir = FolderOf(paths.front());
  OpenFiles({paths.front()}, true);
}

void Editor::OpenFiles(const std::vector<std::string>& paths, bool fullDomain) {
  if (paths.empty() || busy_) return;
  if (HasExtension(paths.front(), ".sup")) {
    OpenSupFile(paths.front());
    return;
  }
  if (!HasExtension(paths.front(), ".vob")) {
    session_.reporter.ReportError("Error, Quillomar can only open sup or vob files");
    return;
  }
  CloseFiles();
  const bool settled = OpenSettled([&] {
    if (fullDomain) {
      AddFullDomain(paths.front());
    } else {
      AddFiles(paths);
    }
  });
  StartScan(settled);
}

void Editor::AddFullDomain(const std::string& path) {
  if (Failed(document_.OpenFullDomain(path))) ReportUnopened(path);
}

// One file that cannot be opened does not keep the others closed.
void Editor::AddFiles(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (Failed(document_.AddFile(path))) ReportUnopened(path);
  }
}

void Editor::ReportUnopened(const std::string& path) {
  session_.reporter.ReportError(Format("Error opening %s\nIs the file writeable?", path.c_str()));
}

void Editor::DropFiles(const std::vector<std::string>& paths) {
  if (busy_ || paths.empty()) return;
  if (paths.size() == 1 && HasExtension(paths.front(), ".sup")) {
    if (CloseCheck()) OpenSupFile(paths.front());
    return;
  }
  const bool isBitmap = HasExtension(paths.front(), ".bmp") || HasExtension(paths.front(), ".ppm");
  if (paths.size() == 1 && isBitmap) {
    video_.EndPlayback();
    if (selection_.Current()) ImportBitmap(paths.front(), ExchangeColoursOfCurrent().colours);
    return;
  }
  const bool allVobs = std::all_of(paths.begin(), paths.end(), [](const std::string& path) {
    return HasExtension(path, ".vob");
  });
  if (!allVobs) {
    session_.reporter.ReportError("Error: I can only open VOB or SUP files");
  } else if (!SameTitleSet(paths)) {
    session_.reporter.ReportError("All the VOB files must come from the same VTS");
  } else if (CloseCheck()) {
    OpenFiles(paths, false);
  }
}

void Editor::StartScan(bool mayBeFast) {
  if (!document_.IsOpen()) return;
  session_.reporter.OpenLog(session_.logPath);
  document_.Prepare();
  video_.Open();
  if (const auto known = mayBeFast ? ChooseFastOpen() : std::nullopt) {
    CloseFiles();
    LoadRecent(*known);
    return;
  }
  StartJob(
      Operation::kScanning, "", [this] { document_.Scan(std::nullopt); },
      [this] {
        session_.reporter.CloseLog();
        SaveAnalysis();
      });
}

void Editor::SaveAll() {
  if (!document_.CanSave()) {
    session_.reporter.ReportReadOnly(ReadOnlyPath(document_, session_.files));
    return;
  }
  if (!session_.reporter.AskOkCancel(
          "This will save all your changes to file. No undo...\nProceed?")) {
    return;
  }
  StartJob(
      Operation::kSaving, "Saving changes", [this] { (void)document_.Save(session_.job); },
      [this] { SaveAnalysis(); });
}

void Editor::ReloadCurrent() {
  if (!UnitMayBeEdited()) return;
  (void)document_.ReloadUnit(OpenCurrent("reload"));
  UpdateView();
}

}  // namespace quillomar
