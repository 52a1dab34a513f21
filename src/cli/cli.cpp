#include "cli/cli.h"

#include <algorithm>
#include <ostream>

#include "base/format.h"
#include "base/paths.h"
#include "cli/cli_call.h"
#include "cli/cli_commands.h"
#include "cli/cli_front_end.h"
#include "dvd/vob_name.h"

namespace quillomar {
namespace {

// The settings file is named after the window's program.
constexpr const char* kWindowProgram = "quillomar";

int WrongUsage(const CliStreams& streams, const std::string& what) {
  streams.err << "quillomar-cli: " << what << "\nTry quillomar-cli --help\n";
  return kCliUsage;
}

const CliCommand* FindCliCommand(const std::string& name) {
  const auto& commands = CliCommands();
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [&](const CliCommand& c) { return name == c.name; });
  return found == commands.end() ? nullptr : &*found;
}

std::string NearestCommand(const std::string& word) {
  std::vector<std::string> names;
  for (const CliCommand& command : CliCommands()) names.emplace_back(command.name);
  return Nearest(word, names);
}

// Folder that an IFO or a folder argument stands for, the disc's top folder included; empty for
// other files.
std::string FolderArgument(FileSystem& files, const std::string& path) {
  if (EqualIgnoringCase(SplitPath(path).extension, ".ifo")) return SplitPath(path).folder;
  if (!files.IsFolder(path)) return {};
  const std::string inside = FindIgnoringCase(files, JoinPath(path, "VIDEO_TS"));
  return files.IsFolder(inside) ? inside : path;
}

void OpenDisc(const CliCall& call, const std::vector<std::string>& paths) {
  FileSystem& files = call.session.files;
  const bool isIfo = EqualIgnoringCase(SplitPath(paths.front()).extension, ".ifo");
  const std::string folder = FolderArgument(files, paths.front());
  if (!isIfo && folder.empty()) {
    call.editor.OpenFiles(paths, false);
    return;
  }
  const std::string vob = VobName(LargestTitleSet(files, folder), 1);
  call.editor.OpenFiles({FindIgnoringCase(files, JoinPath(folder, vob))}, true);
}

// The window's settings, with this run's own values before them; nothing is ever written back.
// Returns the keys of values that no setting has.
std::vector<std::string> ReadSettings(const CliOptions& options, Session& session) {
  SettingsStore store(session.files, ProgramPlace::OfProcess(""));
  for (const auto& [key, value] : options.settings) store.Override(key, value);
  store.Open(kWindowProgram, false);
  BindAllSettings(store, session.preferences, {});
  return store.UnreadOverrides();
}

int RunWithFiles(const CliCommand& command, const CliOptions& options, Session& session,
                 const CliStreams& streams) {
  InstallCliHooks(session, streams, options.yes);
  CliFrontEnd frontEnd;
  InlineJobRunner inlineRunner;
  TerminalJobRunner terminalRunner(session, streams.err);
  const bool showStatus = streams.errIsTerminal && !options.quiet;
  JobRunner& runner = showStatus ? static_cast<JobRunner&>(terminalRunner) : inlineRunner;
  Editor editor(session, frontEnd, runner);
  session.ocrLanguage = options.language;
  session.leftJournals = LeftJournals::kWarn;
  session.fastOpen = options.fast ? FastOpen::kAlways : FastOpen::kNever;
  editor.ReadRecentFiles();
  const auto disc = options.files.begin() + (command.takesInput ? 1 : 0);
  const CliCall call{options, session, editor, streams,
                     command.takesInput ? options.files.front() : std::string()};
  if (!command.opensDisc) return command.run(call);
  OpenDisc(call, {disc, options.files.end()});
  if (!editor.Doc().IsOpen()) return kCliRefused;
  if (!options.ifoPath.empty() && editor.Doc().InSupMode()) editor.AttachIfo(options.ifoPath);
  return command.run(call);
}

// What the command line lacks; empty when nothing.
std::string Lacking(const CliCommand& command, const CliOptions& options) {
  if (options.files.size() < (command.takesInput ? 2U : 1U)) return "no file";
  const std::string required = command.required != nullptr ? command.required : "";
  const bool missing = (required == "--out" && options.outPath.empty()) ||
                       (required == "--types" && options.typesPath.empty()) ||
                       (required == "--pgc" && !options.pgc);
  return missing ? required + " is needed" : std::string();
}

}  // namespace

UnitList CliCall::SelectedUnits() const {
  UnitList selected;
  const ListFilter filter{options.stream, options.vcid, false, options.forced};
  const auto named = [this](int number) {
    const auto holds = [number](const NumberRange& range) {
      return number >= range.first && number <= range.last;
    };
    return options.numbers.empty() ||
           std::any_of(options.numbers.begin(), options.numbers.end(), holds);
  };
  for (const UnitPointer& unit : editor.Doc().Units()) {
    if (named(unit->number) && filter.Passes(*unit)) selected.push_back(unit);
  }
  return selected;
}

int CliCall::Refuse(const std::string& why) const {
  streams.err << why << '\n';
  return kCliRefused;
}

int RunCli(const std::vector<std::string>& arguments, Session& session, const CliStreams& streams) {
  if (arguments.empty()) return WrongUsage(streams, "no command");
  const std::string& name = arguments.front();
  if (name == "--version") {
    streams.out << "quillomar-cli " QUILLOMAR_VERSION "\n";
    return kCliDone;
  }
  if (name == "--help") {
    PrintCliHelp(streams.out);
    return kCliDone;
  }
  const CliCommand* const command = FindCliCommand(name);
  if (command == nullptr) {
    return WrongUsage(streams, "no command " + name + ", the nearest is " + NearestCommand(name));
  }
  std::string error;
  const auto options =
      ParseOptions({arguments.begin() + 1, arguments.end()}, command->options, error);
  if (!options) return WrongUsage(streams, name + ": " + error);
  if (options->help || options->version)
    return RunCli({options->help ? "--help" : "--version"}, session, streams);
  const std::string lacking = Lacking(*command, *options);
  if (!lacking.empty()) return WrongUsage(streams, name + ": " + lacking);
  const auto unknown = ReadSettings(*options, session);
  if (!unknown.empty()) return WrongUsage(streams, name + ": no setting " + unknown.front());
  return RunWithFiles(*command, *options, session, streams);
}

}  // namespace quillomar
