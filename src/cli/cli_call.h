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
  int (*run)(const CliCall&);  // returns the exit code
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

}  // namespace quillomar
