#include "disc/open_disc.h"

#include "base/paths.h"

namespace quillomar::test {
CliOutcome Cli(std::vector<std::string> arguments, const std::vector<std::string>& files) {
  arguments.insert(arguments.end(), files.begin(), files.end());
  const auto disk = MakeDiskFileSystem();
  Session session(*disk, StateFolderBeside(files.empty() ? "" : files.front()));
  session.makeOcrEngine = [&session] {
    return MakeOcrEngine(session.files, session.reporter, "");
  };
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
    : session_(*files_, StateFolderBeside(paths.front())) {
  const auto agree = [this](const std::string& question) {
    questions.push_back(question);
    return true;
  };
  const auto showError = [this](const std::string& text) {
    errors.push_back(text);
    return 1;
  };
  editor_.Context().reporter.InstallHooks({showError, agree, agree});
  editor_.OpenFiles(paths, false);
}

}  // namespace quillomar::test
