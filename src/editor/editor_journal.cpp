// What an interrupted run left behind, and taking back the last save.

#include "base/format.h"
#include "editor/editor.h"
#include "journal/journal_folder.h"

namespace quillomar {
namespace {

std::string OnePerLine(const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text += path + "\n";
  return text;
}

}  // namespace

JournalFolder Editor::Journals() {
  return {session_.files, session_.reporter, session_.stateFolder};
}

bool Editor::SettleJournal(const std::string& journal) {
  JournalFolder journals = Journals();
  const std::string files = OnePerLine(journals.FilesOf(journal));
  const bool restore = session_.reporter.AskRecommended(
      "Quillomar was stopped while it was changing these files:\n" + files +
      "They may be half changed. What was overwritten has been kept.\n"
      "Do you want to restore the files to what they were before that change? (recommended)");
  if (restore) return !Failed(journals.Restore(journal));
  const bool keep = session_.reporter.AskYesNo(
      "Do you want to keep the files as they are and give up what was overwritten?\n"
      "If not, the files are opened, but you won't be able to save changes to them\n"
      "until you have decided.");
  return keep && !Failed(journals.Forget(journal));
}

bool Editor::SettleJournals(const std::vector<std::string>& left) {
  if (session_.leftJournals == LeftJournals::kAsk) {
    bool settled = true;
    for (const std::string& journal : left) settled = SettleJournal(journal) && settled;
    return settled;
  }
  for (const std::string& journal : left) {
    session_.reporter.ReportError(
        "Warning: Quillomar was stopped while it was changing these files:\n" +
        OnePerLine(Journals().FilesOf(journal)) +
        "They may be half changed and won't be written. To restore them to what they were before\n"
        "that change: quillomar-cli recover FILE...");
  }
  return false;
}

bool Editor::OpenSettled(const std::function<void()>& open) {
  open();
  if (!document_.IsOpen()) return true;
  const std::vector<std::string> left = Journals().Left(document_.JournaledPaths());
  if (left.empty()) return true;
  // Restoring needs the files for itself.
  document_.Reset();
  const bool settled = SettleJournals(left);
  open();
  if (!settled) document_.ForbidSaving();
  return settled;
}

void Editor::RestoreLastSaved() {
  const auto saved = Journals().Saved(document_.JournaledPaths());
  if (!saved) {
    session_.reporter.ReportError(
        "There is nothing to restore: these files have not been saved, or what a save\n"
        "overwrote is no longer kept.");
    return;
  }
  if (!session_.reporter.AskOkCancel(
          "This will restore the files to what they were before the last save or retiming.\n"
          "Changes that are not saved are lost. No undo...\nProceed?")) {
    return;
  }
  const std::vector<std::string> paths = document_.OpenedPaths();
  const std::string ifo = document_.InSupMode() ? document_.Ifo().Path() : "";
  CloseFiles();
  (void)Journals().TakeBack(*saved);
  OpenFiles(paths, false);
  if (!ifo.empty() && document_.InSupMode()) AttachIfo(ifo);
}

}  // namespace quillomar
