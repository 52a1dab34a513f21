#include <ostream>

#include "base/format.h"
#include "base/paths.h"
#include "cli/cli_call.h"
#include "dvd/vob_name.h"
#include "editor/left_journals.h"

namespace quillomar {
namespace {

// The files that the arguments stand for: of a folder all, with a VOB its IFO and the backup.
std::vector<std::string> NamedFiles(const CliCall& call) {
  FileSystem& files = call.session.files;
  std::vector<std::string> paths;
  for (const std::string& path : call.options.files) {
    paths.push_back(path);
    const std::string inside = FindIgnoringCase(files, JoinPath(path, "VIDEO_TS"));
    for (const std::string& folder : {path, inside}) {
      if (!files.IsFolder(folder)) continue;
      for (const std::string& name : files.List(folder)) paths.push_back(JoinPath(folder, name));
    }
    const std::string extension = SplitPath(path).extension;
    const bool isIfo = EqualIgnoringCase(extension, ".ifo");
    if (!isIfo && !EqualIgnoringCase(extension, ".vob")) continue;
    const std::string ifo = isIfo ? path : FindIgnoringCase(files, IfoPathOfVob(path));
    paths.push_back(ifo);
    paths.push_back(FindIgnoringCase(files, BackupPathOfIfo(ifo)));
  }
  return paths;
}

}  // namespace

int RunRecover(const CliCall& call) {
  JournalFolder journals = JournalsOf(call.session);
  const std::vector<std::string> paths = NamedFiles(call);
  std::vector<std::string> chosen = journals.Left(paths);
  // An interrupted change comes first: with it nothing older can be taken back.
  const bool takeBack = call.options.saved && chosen.empty();
  if (takeBack) {
    if (const auto saved = journals.Saved(paths)) chosen.push_back(*saved);
  }
  if (chosen.empty() && !call.options.quiet) call.streams.out << "There is nothing to restore.\n";
  Result result = Result::kDone;
  for (const std::string& journal : chosen) {
    const std::vector<std::string> changed = journals.FilesOf(journal);
    const Result done = call.options.keep ? journals.Forget(journal)
                        : takeBack        ? journals.TakeBack(journal)
                                          : journals.Restore(journal);
    if (Failed(done)) {
      result = Result::kFailed;
      continue;
    }
    const char* const what = call.options.keep ? "Kept as it is" : "Restored";
    for (const std::string& path : changed) {
      if (!call.options.quiet) call.streams.out << Format("%s: %s\n", what, path.c_str());
    }
  }
  return Failed(result) ? kCliRefused : kCliDone;
}

}  // namespace quillomar
