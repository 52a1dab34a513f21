// Commands that change nothing.

#include <ostream>

#include "base/format.h"
#include "cli/cli_call.h"
#include "cli/json.h"
#include "cli/unit_json.h"
#include "editor/info_text.h"
#include "spu/run_length.h"

namespace quillomar {

int RunList(const CliCall& call) {
  Document& document = call.editor.Doc();
  std::vector<std::string> items;
  for (const UnitPointer& unit : call.SelectedUnits()) {
    items.push_back(call.options.json ? UnitJson(document, Document::Unrecorded(unit))
                                      : UnitLine(document, *unit));
  }
  if (call.options.json) {
    call.streams.out << JsonArray(items) << '\n';
  } else {
    for (const std::string& line : items) call.streams.out << line << '\n';
  }
  return kCliDone;
}

int RunInfo(const CliCall& call) {
  for (const UnitPointer& unit : call.SelectedUnits()) {
    call.streams.out << InfoPlainText(*unit, call.editor.Doc().Standard()) << '\n';
  }
  return kCliDone;
}

int RunDisc(const CliCall& call) {
  Document& document = call.editor.Doc();
  if (call.options.json) {
    call.streams.out << DiscJson(document) << '\n';
  } else {
    call.streams.out << DiscText(document);
  }
  return kCliDone;
}

int RunRender(const CliCall& call) {
  const UnitList units = call.SelectedUnits();
  if (units.size() != 1) return call.Refuse("render takes exactly one subpicture: --numbers N");
  SubpictureUnit& unit = Document::Unrecorded(units.front());
  if (Failed(NeedBitmap(unit, call.editor.Doc().Context()))) {
    return call.Refuse(Format("Subpic %d has no bitmap", unit.number));
  }
  const std::string header = Format("P5\n%d %d\n3\n", unit.state.width, unit.state.height);
  Bytes bytes(header.begin(), header.end());
  bytes.insert(bytes.end(), unit.pixels.begin(), unit.pixels.end());
  const auto file = call.session.files.Open(call.options.typesPath, OpenMode::kCreate);
  if (!file || Failed(file->WriteAt(0, bytes))) {
    return call.Refuse("Couldn't write " + call.options.typesPath);
  }
  return kCliDone;
}

}  // namespace quillomar
