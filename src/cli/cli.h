#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "editor/session.h"

namespace quillomar {

enum CliExit { kCliDone = 0, kCliRefused = 1, kCliUsage = 2 };

// Where the command-line program reads answers from and writes to.
struct CliStreams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  bool inIsTerminal = false;
  bool errIsTerminal = false;
};

// The whole command-line program; `arguments` without the program's name. Installs its own hooks in
// the session's reporter. Returns the exit code.
[[nodiscard]] int RunCli(const std::vector<std::string>& arguments, Session& session,
                         const CliStreams& streams);

}  // namespace quillomar
