#pragma once

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

// An editor with files open, jobs inline and questions answered with yes.
class OpenEditor {
 public:
  explicit OpenEditor(const std::vector<std::string>& paths);
  Editor& operator*() { return editor_; }
  Editor* operator->() { return &editor_; }

  std::vector<std::string> errors;
  std::vector<std::string> questions;

 private:
  std::unique_ptr<FileSystem> files_ = MakeDiskFileSystem();
  Session session_;
  CliFrontEnd frontEnd_;
  InlineJobRunner runner_;
  Editor editor_{session_, frontEnd_, runner_};
};

}  // namespace quillomar::test
