#pragma once

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "base/platform.h"
#include "cli/cli.h"
#include "cli/cli_front_end.h"
#include "editor/editor.h"
#include "support/disc_copy.h"

namespace quillomar::test {

struct CliOutcome {
  int exitCode = 0;
  std::string out, err;
};

// Where these programs keep their journals: in the folder of the file.
std::string StateFolderBeside(const std::string& path);

// Runs the command-line program on files, inside this process.
CliOutcome Cli(std::vector<std::string> arguments, const std::vector<std::string>& files);

// An editor with files open, jobs inline, which keeps what it says and asks.
class OpenEditor {
 public:
  using Answer = std::function<bool(const std::string& question)>;

  // On the disk. Questions are answered with yes.
  explicit OpenEditor(const std::vector<std::string>& paths);
  OpenEditor(FileSystem& files, const std::string& stateFolder,
             const std::vector<std::string>& paths, Answer answer = {});
  Editor& operator*() { return editor_; }
  Editor* operator->() { return &editor_; }

  std::vector<std::string> errors;
  std::vector<std::string> questions;

 private:
  void Open(const std::vector<std::string>& paths);

  Answer answer_;
  std::unique_ptr<FileSystem> disk_ = MakeDiskFileSystem();
  Session session_;
  CliFrontEnd frontEnd_;
  InlineJobRunner runner_;
  Editor editor_{session_, frontEnd_, runner_};
};

}  // namespace quillomar::test
