// What an interrupted run left behind, and taking back the last save.

#include "editor/editor.h"
#include "editor/left_journals.h"

namespace quillomar {
bool Editor::OpenSettled(const std::function<void()>& open) {
  open();
  if (!document_.IsOpen()) return true;
  const std::vector<std::string> left = JournalsOf(session_).Left(document_.JournaledPaths());
  if (left.empty()) return true;
  // Restoring needs the files for itself.
  document_.Reset();
  const bool settled = SettleJournals(session_, left);
  open();
  if (!settled) document_.ForbidSaving();
  return settled;
}

void Editor::RestoreLastSaved() {
  const auto saved = JournalsOf(session_).Saved(document_.JournaledPaths());
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
  const bool hasIfo = document_.InSupMode() && document_.Ifo().Loaded();
  const std::string ifo = hasIfo ? document_.Ifo().Path() : "";
  CloseFiles();
  (void)JournalsOf(session_).TakeBack(*saved);
  const std::int32_t asks = session_.preferences.askForIfos;
  if (hasIfo) session_.preferences.askForIfos = 0;  // it is known
  OpenFiles(paths, false);
  session_.preferences.askForIfos = asks;
  if (hasIfo && document_.InSupMode()) AttachIfo(ifo);
}

}  // namespace quillomar
