// Commands that change the disc.

#include <ostream>

#include "base/format.h"
#include "cli/cli_call.h"
#include "cli/json.h"
#include "cli/unit_json.h"
#include "editor/unit_edits.h"

namespace quillomar {
namespace {

// What it refuses is said; the others are changed all the same.
Result Apply(const CliCall& call, SubpictureUnit& unit) {
  std::string refusal;
  const Result result = ApplyEdits(unit, call.options.edits, call.session.preferences,
                                   call.editor.Doc().Context(), refusal);
  unit.ReleasePixels();
  if (Failed(result)) {
    call.streams.err << Format("Subpic %d is not changed: %s\n", unit.number, refusal.c_str());
  }
  return result;
}

void PrintClut(const CliCall& call, const ClutRecord& clut) {
  std::vector<std::string> items;
  for (const Rgb colour : ToRgb(clut.entries)) items.push_back(ColourText(colour));
  if (call.options.json) {
    for (std::string& item : items) item = JsonString(item);
    call.streams.out << JsonArray(items) << '\n';
    return;
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    call.streams.out << Format("%2d %s\n", static_cast<int>(i), items[i].c_str());
  }
}

}  // namespace

// What stays modified was refused.
int CliCall::Save() const {
  if (!editor.Doc().Modified()) return kCliDone;
  editor.Run(CommandId::kSaveAll);
  return editor.Doc().Modified() ? kCliRefused : kCliDone;
}

int RunSet(const CliCall& call) {
  if (call.options.edits.Empty()) {
    (void)call.Refuse("set needs something to set, see quillomar-cli --help");
    return kCliUsage;
  }
  bool refused = false;
  for (const UnitPointer& unit : call.SelectedUnits()) {
    if (Failed(Apply(call, Document::Unrecorded(unit)))) refused = true;
  }
  const int saved = call.Save();
  return refused ? kCliRefused : saved;
}

int RunClut(const CliCall& call) {
  ClutRecord* const clut =
      call.editor.Doc().UnrecordedClut(call.options.languageUnit, *call.options.pgc);
  if (clut == nullptr) {
    return call.Refuse(Format("The IFO has no program chain %d in unit %d", *call.options.pgc,
                              call.options.languageUnit));
  }
  if (call.options.entries.empty()) {
    PrintClut(call, *clut);
    return kCliDone;
  }
  for (const auto& [entry, colour] : call.options.entries) {
    YCrCb& current = clut->entries.at(static_cast<std::size_t>(entry));
    if (ToRgb(current) != colour) current = ToYCrCb(colour);
  }
  return call.Save();
}

}  // namespace quillomar
