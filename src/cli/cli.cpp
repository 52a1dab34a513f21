#include "cli/cli.h"

#include <algorithm>
#include <ostream>

#include "base/format.h"
#include "base/paths.h"
#include "cli/cli_call.h"
#include "cli/cli_front_end.h"
#include "dvd/vob_name.h"

namespace quillomar {
namespace {

const std::vector<CliCommand>& CliCommands() {
  static const std::vector<CliCommand> kCommands = {
      {"list", "", "lists the subpictures", {}, RunList},
      {"info", "", "prints what each subpicture holds, command by command", {}, RunInfo},
      {"disc", "", "tells what the files hold", {}, RunDisc},
      {"render",
       "--types FILE.pgm",
       "writes one subpicture's pixel types as a PGM of 4 levels",
       {"--types"},
       RunRender},
      {"frame",
       "--out FILE.bmp [--composed]",
       "writes the video frame at one subpicture, with the subpicture over it when composed",
       {"--out", "--composed"},
       RunFrame},
      {"text",
       "--out FILE",
       "writes what each subpicture holds to a text file",
       {"--out"},
       RunText},
      {"srt", "--out FILE", "writes the recognised text as SubRip", {"--out"}, RunSrt},
      {"set",
       "[--colour TYPE=INDEX]... [--alpha TYPE=VALUE]... [--sequence N|all]",
       "changes subpictures and saves them in place",
       {"--colour", "--alpha", "--sequence"},
       RunSet},
      {"clut",
       "[--unit U] --pgc N [--entry I=#rrggbb]...",
       "shows a program chain's colours, or changes them in the IFO and its backup",
       {"--unit", "--pgc", "--entry"},
       RunClut},
      {"retime",
       "--delta SECONDS",
       "shows subpictures earlier or later, moving their packs on the disc",
       {"--delta"},
       RunRetime},
  };
  return kCommands;
}

// The settings file is named after the window's program.
constexpr const char* kWindowProgram = "quillomar";

constexpr const char* kHelp =
    "usage: quillomar-cli COMMAND [OPTION...] FILE...\n"
    "\n"
    "FILE: one or more VOB files of a title set, or an .IFO or a VIDEO_TS folder (the folder's\n"
    "largest title set, whole).\n"
    "\n"
    "Commands:\n";

constexpr const char* kOptionHelp =
    "\n"
    "Which subpictures (default: all):\n"
    "  --stream 0x20     of one stream\n"
    "  --vcid V/C        of one VOB id and cell id\n"
    "  --numbers 3,7-9   by their number in the set, from 1\n"
    "  --forced          forced ones only\n"
    "\n"
    "TYPE is background, pattern, emphasis1, emphasis2, text (all but the background) or all.\n"
    "\n"
    "Common options:\n"
    "  --json            machine-readable output (list, disc, clut)\n"
    "  --quiet           no output but errors\n"
    "  --yes             answers questions with yes\n"
    "  --fast            reads only what an earlier run found worth reading, where nothing has\n"
    "                    changed since\n"
    "  --set KEY=VALUE   another value for a setting, for this run\n"
    "  --help, --version\n";

void PrintHelp(std::ostream& out) {
  out << kHelp;
  for (const CliCommand& command : CliCommands()) {
    out << Format("  %s %s\n      %s\n", command.name, command.usage, command.summary);
  }
  out << kOptionHelp;
}

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

void OpenArguments(const CliCall& call) {
  FileSystem& files = call.session.files;
  const bool isIfo = EqualIgnoringCase(SplitPath(call.options.files.front()).extension, ".ifo");
  const std::string folder = FolderArgument(files, call.options.files.front());
  if (!isIfo && folder.empty()) {
    call.editor.OpenFiles(call.options.files, false);
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
  session.fastOpen = options.fast ? FastOpen::kAlways : FastOpen::kNever;
  editor.ReadRecentFiles();
  const CliCall call{options, session, editor, streams};
  OpenArguments(call);
  return editor.Doc().IsOpen() ? command.run(call) : static_cast<int>(kCliRefused);
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
    PrintHelp(streams.out);
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
  if (options->files.empty()) return WrongUsage(streams, name + ": no file");
  const auto unknown = ReadSettings(*options, session);
  if (!unknown.empty()) return WrongUsage(streams, name + ": no setting " + unknown.front());
  return RunWithFiles(*command, *options, session, streams);
}

}  // namespace quillomar
