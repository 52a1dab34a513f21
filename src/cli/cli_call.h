#pragma once

#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/options.h"
#include "editor/editor.h"

namespace quillomar {

// One command being carried out, with its files open.
struct CliCall {
  const CliOptions& options;
  Session& session;
  Editor& editor;
  const CliStreams& streams;
  std::string input;  // the file before the disc's, of a command that takes one

  // Saves through the editor, with its question; gives the exit code.
  [[nodiscard]] int Save() const;
  // The units that the options select, in the order of the set.
  [[nodiscard]] UnitList SelectedUnits() const;
  // Says why on standard error and gives the exit code of a refusal.
  [[nodiscard]] int Refuse(const std::string& why) const;
};

struct CliCommand {
  const char* name;
  const char* usage;  // options besides the common ones
  const char* summary;
  std::vector<std::string> options;
  int (*run)(const CliCall&);      // returns the exit code
  const char* required = nullptr;  // an option that cannot be left out
  bool takesInput = false;         // a file of its own stands before the disc's
  bool opensDisc = true;           // its files are opened before it runs
};

int RunList(const CliCall& call);
int RunInfo(const CliCall& call);
int RunDisc(const CliCall& call);
int RunRender(const CliCall& call);
int RunFrame(const CliCall& call);
int RunText(const CliCall& call);
int RunSrt(const CliCall& call);
int RunSet(const CliCall& call);
int RunClut(const CliCall& call);
int RunRetime(const CliCall& call);
int RunExportBmp(const CliCall& call);
int RunExportPpm(const CliCall& call);
int RunImportBmp(const CliCall& call);
int RunExportSup(const CliCall& call);
int RunOcrCommand(const CliCall& call);
int RunEraseHearingImpaired(const CliCall& call);
int RunRecover(const CliCall& call);

}  // namespace quillomar
