// Subpictures to and from files of their own.

#include "base/format.h"
#include "bitmap/bitmap_export.h"
#include "bitmap/bitmap_import.h"
#include "cli/cli_call.h"
#include "editor/picture.h"
#include "editor/view_builder.h"

namespace quillomar {
namespace {

// The one subpicture that the options select; null, with a message, for any other number of them.
UnitPointer OnlyUnit(const CliCall& call) {
  const UnitList units = call.SelectedUnits();
  if (units.size() == 1) return units.front();
  (void)call.Refuse("Select exactly one subpicture: --numbers N");
  return nullptr;
}

TypeColours ColoursFor(const CliCall& call, const SubpictureUnit& unit) {
  const ClutRecord* const clut = ClutOfUnit(call.editor.Doc(), unit);
  const auto choice =
      call.options.automaticPalette ? PaletteChoice::kAutomatic : PaletteChoice::kIfo;
  return ColoursForExchange(unit, clut, AutomaticDefaults(call.session.preferences), choice)
      .colours;
}

int Written(const CliCall& call, Result result) {
  if (!Failed(result)) return kCliDone;
  return call.Refuse("Couldn't write " + call.options.outPath);
}

}  // namespace

int RunExportBmp(const CliCall& call) {
  const UnitPointer unit = OnlyUnit(call);
  if (!unit) return kCliRefused;
  const BmpDepth depth = call.options.bits == 4 ? BmpDepth::k4Bit : BmpDepth::k24Bit;
  return Written(
      call, ExportBmp(Document::Unrecorded(unit), call.options.outPath, depth,
                      ColoursFor(call, *unit), call.session.files, call.editor.Doc().Context()));
}

int RunExportPpm(const CliCall& call) {
  const UnitPointer unit = OnlyUnit(call);
  if (!unit) return kCliRefused;
  const PpmScale scale{call.options.scaleX, call.options.scaleY};
  // It never comes back, so its colours need not tell the pixel types apart.
  const ClutRecord* const clut =
      call.options.automaticPalette ? nullptr : ClutOfUnit(call.editor.Doc(), *unit);
  const TypeColours shown = MakeDisplayPalette(*unit, clut, call.session.preferences).colours;
  return Written(call, ExportPpm(Document::Unrecorded(unit), call.options.outPath, scale, shown,
                                 call.session.files, call.editor.Doc().Context()));
}

int RunImportBmp(const CliCall& call) {
  const UnitPointer unit = OnlyUnit(call);
  if (!unit) return kCliRefused;
  if (Failed(ImportBmp(Document::Unrecorded(unit), call.input, ColoursFor(call, *unit),
                       call.session.files, call.editor.Doc().Context()))) {
    return call.Refuse(Format("Subpic %d is not changed", unit->number));
  }
  return call.Save();
}

int RunExportSup(const CliCall& call) {
  const UnitList units = call.SelectedUnits();
  for (const UnitPointer& unit : units) {
    if (unit->stream == units.front()->stream) continue;
    return call.Refuse(
        "You did not select a specific subpicture stream.\n"
        "Select one first before saving as sup file.");
  }
  return Written(call, call.editor.Doc().ExportSup(units, call.options.outPath));
}

}  // namespace quillomar
