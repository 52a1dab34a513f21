#include <iostream>
#include <string>
#include <vector>

#include "base/platform.h"
#include "cli/cli.h"

int main(int argc, char** argv) {
  using namespace quillomar;
  PrepareEnvironment();
  const auto files = MakeDiskFileSystem();
  Session session(*files, StateFolder());
  session.dataFolder = EnvironmentVariable("APPDATA").value_or("");
  session.makeOcrEngine = [&session] {
    return MakeOcrEngine(session.files, session.reporter, OcrDatabaseFolder(session.dataFolder));
  };
  const CliStreams streams{std::cin, std::cout, std::cerr, IsTerminal(StandardStream::kIn),
                           IsTerminal(StandardStream::kError)};
  return RunCli({argv + 1, argv + argc}, session, streams);
}
