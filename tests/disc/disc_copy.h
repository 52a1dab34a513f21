#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "base/platform.h"
#include "cli/cli.h"
#include "cli/cli_front_end.h"
#include "editor/editor.h"

namespace quillomar::test {

struct CliOutcome {
  int exitCode = 0;
  std::string out, err;
};

// A copy of an authored disc that a test may change; gone when the test ends.
class DiscCopy {
 public:
  // `name` is a folder of the discs that the environment variable QUILLOMAR_DISCS names.
  explicit DiscCopy(const std::string& name);
  ~DiscCopy();
  DiscCopy(const DiscCopy&) = delete;
  DiscCopy& operator=(const DiscCopy&) = delete;

  [[nodiscard]] std::string Path(const std::string& file) const { return folder_ + "/" + file; }
  [[nodiscard]] const std::string& Folder() const { return folder_; }
  // VOBs of title set 1: the title domain's pieces in order, or the menu.
  [[nodiscard]] std::vector<std::string> TitleVobs() const;
  [[nodiscard]] std::vector<std::string> MenuVobs() const { return {Path("VTS_01_0.VOB")}; }

  static bool Available();

 private:
  std::string folder_;
};

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
  Session session_{*files_, std::make_unique<DirectTransactionSource>()};
  CliFrontEnd frontEnd_;
  InlineJobRunner runner_;
  Editor editor_{session_, frontEnd_, runner_};
};

Bytes FileBytes(const std::string& path);

}  // namespace quillomar::test
