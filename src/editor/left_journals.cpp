#include "editor/left_journals.h"

namespace quillomar {
namespace {

std::string OnePerLine(const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text += path + "\n";
  return text;
}

bool Settle(Session& session, const std::string& journal) {
  JournalFolder journals = JournalsOf(session);
  const std::string files = OnePerLine(journals.FilesOf(journal));
  const bool restore = session.reporter.AskRecommended(
      "Quillomar was stopped while it was changing these files:\n" + files +
      "They may be half changed. What was overwritten has been kept.\n"
      "Do you want to restore the files to what they were before that change? (recommended)");
  if (restore) return !Failed(journals.Restore(journal));
  const bool keep = session.reporter.AskYesNo(
      "Do you want to keep the files as they are and give up what was overwritten?\n"
      "If not, the files are opened, but you won't be able to save changes to them\n"
      "until you have decided.");
  return keep && !Failed(journals.Forget(journal));
}

void Warn(Session& session, const std::string& journal) {
  session.reporter.ReportError(
      "Warning: Quillomar was stopped while it was changing these files:\n" +
      OnePerLine(JournalsOf(session).FilesOf(journal)) +
      "They may be half changed and won't be written. To restore them to what they were before\n"
      "that change: quillomar-cli recover FILE...");
}

}  // namespace

JournalFolder JournalsOf(Session& session) {
  return {session.files, session.reporter, session.stateFolder};
}

bool SettleJournals(Session& session, const std::vector<std::string>& left) {
  bool settled = true;
  for (const std::string& journal : left) {
    if (session.leftJournals == LeftJournals::kAsk) {
      settled = Settle(session, journal) && settled;
    } else {
      Warn(session, journal);
      settled = false;
    }
  }
  return settled;
}

}  // namespace quillomar
