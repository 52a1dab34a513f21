// .sup files: opening, their colours, saving a stream as one.

#include "base/format.h"
#include "base/paths.h"
#include "editor/editor.h"

namespace quillomar {
namespace {

constexpr const char* kSupFilter = "sup Files (*.sup)|*.sup||";

}  // namespace

void Editor::OpenSup() {
  if (!CloseCheck()) return;
  const auto paths =
      frontEnd_.ChooseFiles({"Load .sup file", kSupFilter, session_.preferences.lastSupDir, ""});
  if (paths.empty()) return;
  OpenSupFile(paths.front());
}

void Editor::OpenSupFile(const std::string& path) {
  CloseFiles();
  OpenSettled([&] { (void)document_.OpenSup(path); });
  if (!document_.IsOpen()) {
    session_.reporter.ReportError(Format("Error opening %s", path.c_str()));
    return;
  }
  session_.preferences.lastSupDir = SplitPath(path).folder;
  RefillList();
  if (session_.preferences.askForIfos != 0) ChooseIfo();
}

void Editor::OpenIfo() {
  if (document_.InSupMode()) ChooseIfo();
}

void Editor::ChooseIfo() {
  const auto paths = frontEnd_.ChooseFiles(
      {"Load IFO file", "IFO Files (*.IFO)|*.IFO||", session_.preferences.lastSupDir, ""});
  if (!paths.empty()) AttachIfo(paths.front());
}

// The first program chain's colours, unless the user picks another's.
void Editor::AttachIfo(const std::string& path) {
  if (Failed(document_.AttachIfo(path))) return;
  const auto& cluts = document_.Cells().cluts;
  if (cluts.size() > 1) {
    std::vector<std::string> items;
    items.reserve(cluts.size());
    for (const ClutRecord& clut : cluts) items.push_back(Format("PGC %d", clut.pgc));
    document_.UseClut(frontEnd_.ChooseItem("Colors of which program chain?", items).value_or(0));
  }
  UpdateView();
}

void Editor::SaveSup() {
  if (!selection_.filter.stream && document_.HighestStream() > 0) {
    session_.reporter.ReportError(
        "You did not select a specific subpicture stream.\n"
        "Select one first before saving as sup file.");
    return;
  }
  FileRequest request{"Save subpics as .sup file", kSupFilter, session_.preferences.lastSaveSupDir,
                      ""};
  request.forSaving = true;
  const auto paths = frontEnd_.ChooseFiles(request);
  if (paths.empty()) return;
  if (Failed(document_.ExportSup(selection_.List(), paths.front()))) return;
  session_.preferences.lastSaveSupDir = SplitPath(paths.front()).folder;
}

}  // namespace quillomar
