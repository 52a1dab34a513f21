// Commands that read the text of subpictures or erase some of it.

#include <ostream>

#include "base/format.h"
#include "base/utf8.h"
#include "cli/cli_call.h"
#include "cli/json.h"
#include "editor/text_output.h"

namespace quillomar {
namespace {

std::string BoxJson(const CharBox& box) {
  return JsonObject()
      .Add("x0", box.x0)
      .Add("x1", box.x1)
      .Add("y0", box.y0)
      .Add("y1", box.y1)
      .Add("ch", JsonString(ToUtf8({&box.ch, 1})))
      .Add("line", box.line)
      .Add("lineRefRow", box.lineRefRow)
      .Add("lineSlant", Format("%.9g", static_cast<double>(box.lineSlant)))
      .Text();
}

std::string TextJson(const SubpictureUnit& unit) {
  std::vector<std::string> lines;
  for (const std::string& line : unit.ocrText) lines.push_back(JsonString(line));
  std::vector<std::string> boxes;
  if (unit.charBoxCount > 0) {
    for (const CharBox& box : unit.charBoxes) boxes.push_back(BoxJson(box));
  }
  return JsonObject()
      .Add("number", unit.number)
      .Add("lines", JsonArray(lines))
      .Add("boxes", JsonArray(boxes))
      .Text();
}

void PrintText(const CliCall& call, const UnitList& units) {
  if (call.options.json) {
    std::vector<std::string> items;
    for (const UnitPointer& unit : units) items.push_back(TextJson(*unit));
    call.streams.out << JsonArray(items) << '\n';
    return;
  }
  for (const UnitPointer& unit : units) {
    call.streams.out << unit->number << '\n';
    for (const std::string& line : unit->ocrText) call.streams.out << line << '\n';
    call.streams.out << '\n';
  }
}

}  // namespace

int RunOcrCommand(const CliCall& call) {
  if (!call.editor.MayReadText()) return kCliRefused;
  const UnitList units = call.SelectedUnits();
  call.editor.OcrUnits(units);
  Session& session = call.session;
  const std::string& srt = call.options.srtPath;
  if (!srt.empty()) {
    const std::string text = SrtText(units, call.editor.Doc().Context());
    if (Failed(WriteTextFile(session.files, session.reporter, srt, text))) return kCliRefused;
  }
  if (call.options.json || srt.empty()) PrintText(call, units);
  return kCliDone;
}

int RunEraseHearingImpaired(const CliCall& call) {
  if (!call.editor.MayReadText()) return kCliRefused;
  call.editor.HideHearingImpairedIn(call.SelectedUnits());
  const int refused = call.editor.RefusedByLastJob();
  const int saved = call.Save();
  return refused > 0 ? kCliRefused : saved;
}

}  // namespace quillomar
