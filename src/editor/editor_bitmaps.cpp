// Subpictures as bitmap files: saving, replacing, the external editor.

#include "base/format.h"
#include "base/paths.h"
#include "base/platform.h"
#include "bitmap/bitmap_export.h"
#include "bitmap/bitmap_import.h"
#include "editor/editor.h"
#include "editor/picture.h"
#include "editor/view_builder.h"

namespace quillomar {
namespace {

constexpr const char* kSaveFilter =
    "24bit bmp Files (*.bmp)|*.bmp|4bit bmp Files (*.bmp)|*.bmp|ppm Files (*.ppm)|*.ppm||";
constexpr const char* kSaveFailed = "Couldn't save subpic as BMP! sorry... ";
constexpr const char* kTemporaryBitmap = "tempbitmap.bmp";

// Places in the list of filters.
enum SaveType { kSave24Bit = 0, kSave4Bit = 1, kSavePpm = 2 };

}  // namespace

std::string Editor::ProposedBitmapName() const {
  const SubpictureUnit& unit = *selection_.Current();
  return Format("%ssubpic_0x%02x_%03d", session_.preferences.lastPpmDir.c_str(),
                static_cast<unsigned>(unit.SubStreamId()), unit.number);
}

// A bitmap whose colours cannot tell the pixel types apart leaves and returns in the automatic
// ones.
ExchangeColours Editor::ExchangeColoursOfCurrent() {
  const SubpictureUnit& unit = *selection_.Current();
  const ExchangeColours colours =
      ColoursForExchange(unit, ClutOfUnit(document_, unit), AutomaticDefaults(session_.preferences),
                         look_.automaticClut ? PaletteChoice::kAutomatic : PaletteChoice::kIfo);
  if (colours.replaced && session_.preferences.warnOnBitmapImport != 0) {
    session_.reporter.ReportError(kEqualColoursWarning);
  }
  return colours;
}

// Playback walks on through the list; what the user names a file for must stay the current unit.
void Editor::SaveBitmap() {
  video_.EndPlayback();
  int type = session_.preferences.bitmapSaveType;
  FileRequest request{"Save subpic as bitmap file", kSaveFilter, session_.preferences.lastPpmDir,
                      ProposedBitmapName()};
  request.forSaving = true;
  request.filterIndex = &type;
  const auto paths = frontEnd_.ChooseFiles(request);
  if (paths.empty()) return;
  session_.preferences.bitmapSaveType = type;
  session_.preferences.lastPpmDir = SplitPath(paths.front()).folder;
  SaveBitmapAs(paths.front(), type);
}

void Editor::SavePpm() {
  video_.EndPlayback();
  FileRequest request{"Save subpic as PPM file", "ppm Files (*.ppm)|*.ppm||",
                      session_.preferences.lastPpmDir, ProposedBitmapName()};
  request.forSaving = true;
  const auto paths = frontEnd_.ChooseFiles(request);
  if (paths.empty()) return;
  session_.preferences.lastPpmDir = SplitPath(paths.front()).folder;
  SaveBitmapAs(paths.front(), kSavePpm);
}

void Editor::SaveBitmapAs(const std::string& path, int type) {
  SubpictureUnit& unit = Document::Unrecorded(selection_.Current());
  const SpuContext context = document_.Context();
  Result saved = Result::kFailed;
  if (type == kSavePpm) {
    // It never comes back, so its colours need not tell the pixel types apart.
    const ClutRecord* const clut = look_.automaticClut ? nullptr : ClutOfUnit(document_, unit);
    const TypeColours shown = MakeDisplayPalette(unit, clut, session_.preferences).colours;
    saved = ExportPpm(unit, path, {}, shown, session_.files, context);
  } else {
    const BmpDepth depth = type == kSave4Bit ? BmpDepth::k4Bit : BmpDepth::k24Bit;
    saved =
        ExportBmp(unit, path, depth, ExchangeColoursOfCurrent().colours, session_.files, context);
  }
  if (Failed(saved)) session_.reporter.ReportError(kSaveFailed);
}

void Editor::ReplaceBitmap() {
  video_.EndPlayback();
  const auto paths =
      frontEnd_.ChooseFiles({"Load replacement bitmap (.bmp) file", "bmp Files (*.bmp)|*.bmp||",
                             session_.preferences.lastPpmDir, ProposedBitmapName()});
  if (paths.empty()) return;
  session_.preferences.lastPpmDir = SplitPath(paths.front()).folder;
  ImportBitmap(paths.front(), ExchangeColoursOfCurrent().colours);
}

void Editor::ImportBitmap(const std::string& path, const TypeColours& colours) {
  (void)ImportBmp(OpenCurrent("replacement bitmap"), path, colours, session_.files,
                  document_.Context());
  UpdateView();
}

void Editor::EditBitmap() {
  const Preferences& preferences = session_.preferences;
  if (preferences.bitmapToolPath.empty()) {
    session_.reporter.ReportError(
        "You haven't indicated which tool to use to edit the subpic bitmap\n"
        "I will open the preference dialog to let you do that");
    ShowPreferences();
  }
  if (preferences.bitmapToolPath.empty() || !selection_.Current()) return;
  video_.Stop();
  const std::string path = JoinPath(EnvironmentVariable("TEMP").value_or(""), kTemporaryBitmap);
  const ExchangeColours colours = ExchangeColoursOfCurrent();
  const bool chosen = look_.automaticClut;
  look_.automaticClut = chosen || colours.replaced;
  UpdateView();
  EditWithTool(path, colours.colours);
  look_.automaticClut = chosen;
  UpdateView();
}

void Editor::EditWithTool(const std::string& path, const TypeColours& colours) {
  const Preferences& preferences = session_.preferences;
  const UnitPointer unit = selection_.Current();
  const BmpDepth depth = preferences.editBitmapAs24Bit > 0 ? BmpDepth::k24Bit : BmpDepth::k4Bit;
  if (Failed(ExportBmp(Document::Unrecorded(unit), path, depth, colours, session_.files,
                       document_.Context()))) {
    session_.reporter.ReportError(kSaveFailed);
    return;
  }
  if (!frontEnd_.RunProgram(preferences.bitmapToolPath, preferences.bitmapToolArguments, path)) {
    session_.reporter.ReportError(Format("Couldn't start %s", preferences.bitmapToolPath.c_str()));
    return;
  }
  if (selection_.Current() == unit) ImportBitmap(path, colours);
}

}  // namespace quillomar
