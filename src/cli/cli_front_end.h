#pragma once

#include <ostream>

#include "cli/cli.h"
#include "editor/front_end.h"

namespace quillomar {

class Editor;

// The front end of a program without a window: chooses nothing, opens nothing, shows nothing.
class CliFrontEnd : public FrontEnd {
 public:
  std::vector<std::string> ChooseFiles(const FileRequest&) override { return {}; }
  std::optional<int> ChooseItem(const std::string&, const std::vector<std::string>&) override {
    return std::nullopt;
  }
  bool RunProgram(const std::string&, const std::string&, const std::string&) override {
    return false;
  }
  std::optional<Rgb> ChooseColour(const std::string&, Rgb) override { return std::nullopt; }
  bool OpenDocument(const std::string&) override { return false; }
  void ShowMessage(const std::string&) override {}
  void ShowAbout() override {}
  void ShowPreferences() override {}
  void ExtractManual(const std::string&) override {}
  std::string PageAddress(const std::string& page) override { return page; }
  void CloseWindow() override {}
  void Refresh() override {}
  void JobStarted(const std::string&) override {}
  void JobEnded() override {}
};

// Messages go to standard error; questions are answered by --yes, by the user on a terminal, else
// no.
void InstallCliHooks(Session& session, const CliStreams& streams, bool yes);

// Runs the job on a thread of its own and shows its status line on a terminal meanwhile.
class TerminalJobRunner final : public JobRunner {
 public:
  TerminalJobRunner(Session& session, std::ostream& err) : session_(session), err_(err) {}
  void Run(std::function<void()> work, std::function<void()> finished) override;

 private:
  void ShowStatus();

  Session& session_;
  std::ostream& err_;
};

}  // namespace quillomar
