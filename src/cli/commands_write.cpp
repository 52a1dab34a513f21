// Commands that change the disc.

#include <ostream>

#include "base/format.h"
#include "cli/cli_call.h"
#include "cli/json.h"
#include "cli/unit_json.h"
#include "spu/colour_edit.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// Saves through the editor, with its question; what stays modified was refused.
int Save(const CliCall& call) {
  Document& document = call.editor.Doc();
  if (!document.Modified()) return kCliDone;
  call.editor.Run(CommandId::kSaveAll);
  return document.Modified() ? kCliRefused : kCliDone;
}

std::vector<int> TypesOf(int which, const SubpictureUnit& unit) {
  if (which < kPixelTypes) return {which};
  std::vector<int> types;
  for (int type = 0; type < kPixelTypes; ++type) {
    const bool background = type == unit.state.statistics.backgroundType;
    if (which == kAlphaAll || !background) types.push_back(type);
  }
  return types;
}

Result ApplyColours(SubpictureUnit& unit, const CliOptions& options) {
  for (const TypeValue& colour : options.colours) {
    for (const int type : TypesOf(colour.which, unit)) {
      if (Failed(SetColour(unit, colour.value, type))) return Result::kFailed;
    }
  }
  return Result::kDone;
}

Result ApplyAlphas(SubpictureUnit& unit, const CliOptions& options, const SpuContext& context) {
  for (const TypeValue& alpha : options.alphas) {
    if (Failed(SetAlpha(unit, alpha.value, alpha.which, context))) return Result::kFailed;
  }
  return Result::kDone;
}

// A unit that lacks the sequence asked for is left wholly alone.
Result Apply(const CliCall& call, SubpictureUnit& unit) {
  const SpuContext context = call.editor.Doc().Context();
  const int sequence = call.options.sequence.value_or(0);
  if (sequence >= static_cast<int>(unit.state.sequences.size())) {
    call.streams.err << Format("Subpic %d has no DCSQT %d, not changed\n", unit.number, sequence);
    return Result::kFailed;
  }
  unit.allSequences = !call.options.sequence.has_value();
  (void)SelectControlSequence(unit, sequence);
  const SpuState before = unit.state;
  const bool done = !Failed(NeedBitmap(unit, context)) &&
                    !Failed(ApplyAlphas(unit, call.options, context)) &&
                    !Failed(ApplyColours(unit, call.options));
  unit.ReleasePixels();
  if (done) return Result::kDone;
  unit.state = before;
  call.streams.err << Format("Subpic %d cannot be changed\n", unit.number);
  return Result::kFailed;
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

int RunSet(const CliCall& call) {
  if (call.options.colours.empty() && call.options.alphas.empty()) {
    (void)call.Refuse("set needs something to set: --colour, --alpha");
    return kCliUsage;
  }
  bool refused = false;
  for (const UnitPointer& unit : call.SelectedUnits()) {
    if (Failed(Apply(call, *unit))) refused = true;
  }
  const int saved = Save(call);
  return refused ? kCliRefused : saved;
}

int RunClut(const CliCall& call) {
  if (!call.options.pgc) {
    (void)call.Refuse("clut needs --pgc N");
    return kCliUsage;
  }
  ClutRecord* const clut =
      call.editor.Doc().EditableClut(call.options.languageUnit, *call.options.pgc);
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
  return Save(call);
}

}  // namespace quillomar
