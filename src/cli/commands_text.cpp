// Commands that write text files.

#include "cli/cli_call.h"
#include "editor/text_output.h"

namespace quillomar {
namespace {

int WriteOut(const CliCall& call, const std::string& text) {
  Session& session = call.session;
  return Failed(WriteTextFile(session.files, session.reporter, call.options.outPath, text))
             ? kCliRefused
             : kCliDone;
}

int LackOfTarget(const CliCall& call, const std::string& command) {
  (void)call.Refuse(command + " needs --out FILE");
  return kCliUsage;
}

}  // namespace

int RunText(const CliCall& call) {
  if (call.options.outPath.empty()) return LackOfTarget(call, "text");
  return WriteOut(call, InfoListText(call.SelectedUnits(), call.editor.Doc().Standard()));
}

int RunSrt(const CliCall& call) {
  if (call.options.outPath.empty()) return LackOfTarget(call, "srt");
  return WriteOut(call, SrtText(call.SelectedUnits(), call.editor.Doc().Context()));
}

}  // namespace quillomar
