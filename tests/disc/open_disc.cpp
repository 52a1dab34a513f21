#include "disc/open_disc.h"

#include "base/paths.h"

namespace quillomar::test {
CliOutcome Cli(std::vector<std::string> arguments, const std::vector<std::string>& files) {
  arguments.insert(arguments.end(), files.begin(), files.end());
  const auto disk = MakeDiskFileSystem();
  Session session(*disk, StateFolderBeside(files.empty() ? "" : files.front()));
  session.makeOcrEngine = [&session] { return MakeOcrEngine(session.files, session.reporter, ""); };
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  const int exitCode = RunCli(arguments, session, {in, out, err});
  return {exitCode, out.str(), err.str()};
}

std::string StateFolderBeside(const std::string& path) {
  return SplitPath(path).folder + "state";
}

OpenEditor::OpenEditor(const std::vector<std::string>& paths)
    : session_(*disk_, StateFolderBeside(paths.front())) {
  Open(paths);
}

OpenEditor::OpenEditor(FileSystem& files, const std::string& stateFolder,
                       const std::vector<std::string>& paths, Answer answer)
    : answer_(std::move(answer)), session_(files, stateFolder) {
  Open(paths);
}

void OpenEditor::Open(const std::vector<std::string>& paths) {
  const auto ask = [this](const std::string& question) {
    questions.push_back(question);
    return !answer_ || answer_(question);
  };
  const auto showError = [this](const std::string& text) {
    errors.push_back(text);
    return 1;
  };
  session_.reporter.InstallHooks({showError, ask, ask});
  if (!paths.empty()) editor_.OpenFiles(paths, false);
}

}  // namespace quillomar::test
