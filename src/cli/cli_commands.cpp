#include "cli/cli_commands.h"

#include <ostream>

#include "base/format.h"

namespace quillomar {
namespace {

constexpr const char* kHelp =
    "usage: quillomar-cli COMMAND [OPTION...] FILE...\n"
    "\n"
    "FILE: one or more VOB files of a title set, or an .IFO or a VIDEO_TS folder (the folder's\n"
    "largest title set, whole), or a .sup file.\n"
    "\n"
    "Commands:\n";

constexpr const char* kOptionHelp =
    "\n"
    "EDIT, carried out in this order:\n"
    "  --move-y LINES            up from the place as found (negative: down)\n"
    "  --border LINES, --flush   keeps to the borders, moves to the nearest\n"
    "  --crop                    crops the background\n"
    "  --move-x PIXELS           right from the place as found (negative: left)\n"
    "  --fade add|remove\n"
    "  --alpha TYPE=VALUE        0 (clear) to 15 (opaque)\n"
    "  --hide                    makes it fully transparent\n"
    "  --colour TYPE=INDEX       0 to 15\n"
    "  --sequence N|all          where --alpha and --colour apply, from 0 (default: all)\n"
    "  --infinite, --stop        takes the timed end away, adds one\n"
    "  --duration MS\n"
    "  --start forced|normal\n"
    "TYPE is background, pattern, emphasis1, emphasis2, text (all but the background) or all.\n"
    "\n"
    "Which subpictures (default: all):\n"
    "  --stream 0x20     of one stream\n"
    "  --vcid V/C        of one VOB id and cell id\n"
    "  --numbers 3,7-9   by their number in the set, from 1\n"
    "  --forced          forced ones only\n"
    "\n"
    "Common options:\n"
    "  --ifo FILE        where the colours of a .sup file come from\n"
    "  --language CODE   en, fr, eng, fra, ..., in place of what the disc says of its streams\n"
    "  --json            machine-readable output (list, disc, clut, ocr)\n"
    "  --quiet           only results and errors\n"
    "  --yes             answers questions with yes\n"
    "  --fast            reads only what an earlier run found worth reading, where nothing has\n"
    "                    changed since\n"
    "  --set KEY=VALUE   another value for a setting, for this run\n"
    "  --help, --version\n";

const std::vector<CliCommand> kCommands = {
    {"list", "", "lists the subpictures", {}, RunList},
    {"info", "", "prints what each subpicture holds, command by command", {}, RunInfo},
    {"disc", "", "tells what the files hold", {}, RunDisc},
    {"render",
     "--types FILE.pgm",
     "writes one subpicture's pixel types as a PGM of 4 levels",
     {"--types"},
     RunRender,
     "--types"},
    {"frame",
     "--numbers N --out FILE.bmp [--composed]",
     "writes the video frame at one subpicture, with the subpicture over it when composed",
     {"--out", "--composed"},
     RunFrame,
     "--out"},
    {"text",
     "--out FILE",
     "writes what each subpicture holds to a text file",
     {"--out"},
     RunText,
     "--out"},
    {"srt", "--out FILE", "writes the recognised text as SubRip", {"--out"}, RunSrt, "--out"},
    {"ocr",
     "[--language CODE] [--srt FILE]",
     "reads the text of the subpictures and prints it, or writes it as SubRip",
     {"--language", "--srt"},
     RunOcrCommand},
    {"erase-hi",
     "[--language CODE]",
     "erases text for the hearing-impaired from the bitmaps and saves them in place",
     {"--language"},
     RunEraseHearingImpaired},
    {"set",
     "EDIT...",
     "changes subpictures and saves them in place",
     {"--colour", "--alpha", "--sequence", "--move-x", "--move-y", "--border", "--flush",
      "--duration", "--infinite", "--stop", "--start", "--fade", "--hide", "--crop"},
     RunSet},
    {"clut",
     "[--unit U] --pgc N [--entry I=#rrggbb]...",
     "shows a program chain's colours, or changes them in the IFO and its backup",
     {"--unit", "--pgc", "--entry"},
     RunClut,
     "--pgc"},
    {"retime",
     "--delta SECONDS",
     "shows subpictures earlier or later, moving their packs on the disc",
     {"--delta"},
     RunRetime},
    {"export-bmp",
     "--numbers N --out FILE [--bits 24|4] [--palette ifo|auto]",
     "writes one subpicture on its frame as a BMP",
     {"--out", "--bits", "--palette"},
     RunExportBmp,
     "--out"},
    {"export-ppm",
     "--numbers N --out FILE [--scale X,Y] [--palette ifo|auto]",
     "writes one subpicture as a PPM",
     {"--out", "--scale", "--palette"},
     RunExportPpm,
     "--out"},
    {"import-bmp",
     "--numbers N [--palette ifo|auto] FILE.bmp",
     "replaces one subpicture's bitmap and saves it in place",
     {"--palette"},
     RunImportBmp,
     nullptr,
     true},
    {"export-sup",
     "--out FILE",
     "writes the subpictures of one stream as a .sup file",
     {"--out"},
     RunExportSup,
     "--out"},
    {"recover",
     "[--keep|--saved]",
     "restores files that an interrupted save or retiming left half changed; --keep leaves them\n"
     "      so and gives up what was overwritten; --saved takes back the last save or retiming",
     {"--keep", "--saved"},
     RunRecover,
     nullptr,
     false,
     false},
};

}  // namespace

const std::vector<CliCommand>& CliCommands() {
  return kCommands;
}

void PrintCliHelp(std::ostream& out) {
  out << kHelp;
  for (const CliCommand& command : CliCommands()) {
    out << "  " << command.name << (*command.usage ? " " : "") << command.usage << "\n      "
        << command.summary << "\n";
  }
  out << kOptionHelp;
}

}  // namespace quillomar
