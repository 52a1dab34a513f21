// Recent files and the fast open.

#include "base/format.h"
#include "editor/analysis.h"
#include "editor/editor.h"
#include "editor/left_journals.h"

namespace quillomar {

void Editor::ReadRecentFiles() {
  recent_.Open(session_.dataFolder);
  NoteRecentFiles();
}

void Editor::NoteRecentFiles() {
  session_.preferences.recentFileCount = static_cast<std::int32_t>(recent_.Entries().size());
}

void Editor::SaveAnalysis() {
  if (!document_.Results().complete) return;
  recent_.Save(AnalysisOf(document_));
  NoteRecentFiles();
}

void Editor::OpenMostRecent() {
  OpenRecent(0);
}

void Editor::OpenRecent(std::size_t entry) {
  if (busy_ || entry >= recent_.Entries().size() || !MayClose()) return;
  LoadRecent(entry);
}

// The entry that makes a scan of the open files needless, if the user wants it so.
std::optional<std::size_t> Editor::ChooseFastOpen() {
  if (session_.fastOpen == FastOpen::kNever) return std::nullopt;
  const AnalysisCache wanted = AnalysisOf(document_);
  recent_.Rebuild();
  NoteRecentFiles();
  const auto entry = recent_.Find(wanted.paths.front(), wanted.paths.size());
  if (!entry || session_.fastOpen == FastOpen::kAlways) return entry;
  const bool yes = session_.reporter.AskYesNo(
      "The file(s) you want to open was previously analyzed,\n"
      "and you have the possibility to do a \"fast open\" (which is a lot faster than "
      "rescanning).\n"
      "You won't be able to retime subpics, but everything else will work normally.\n"
      "Do you want to do a fast open?");
  return yes ? entry : std::nullopt;
}

void Editor::LoadRecent(std::size_t entry) {
  // Of the scan that this takes the place of.
  session_.reporter.CloseLog();
  const std::string firstPath = recent_.Entries().at(entry).firstPath;
  const bool promoted = !Failed(recent_.Promote(entry));
  NoteRecentFiles();
  auto cache = promoted ? ReadAnalysisCache(session_.files, recent_.EntryPath(0)) : std::nullopt;
  if (!cache) {
    session_.reporter.ReportError(Format(
        "%s has changed since it was analyzed.\nOpen it to scan it again.", firstPath.c_str()));
    UpdateView();
    return;
  }
  CloseFiles();
  for (const std::string& path : cache->paths) {
    if (!Failed(document_.AddFile(path))) continue;
    ReportUnopened(path);
    CloseFiles();
    return;
  }
  if (!JournalsOf(session_).Left(document_.JournaledPaths()).empty()) {
    // What is known of the files may no longer hold.
    OpenFiles(cache->paths, false);
    return;
  }
  session_.reporter.OpenLog(session_.logPath);
  document_.Prepare();
  video_.Open();
  StartJob(
      Operation::kLoadingRecent, "",
      [this, lbas = std::move(cache->lbas)] { document_.Scan(lbas); },
      [this] { session_.reporter.CloseLog(); });
}

}  // namespace quillomar
