#include "editor/view_builder.h"

#include <algorithm>

#include "base/format.h"
#include "editor/highlight.h"
#include "editor/info_text.h"
#include "spu/colour_edit.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

constexpr std::array<const char*, kPixelTypes> kTypeNames = {"background", "text", "anti-alias (1)",
                                                             "anti-alias (2)"};

// The stream's label as the program chain has it; a stream that the chain does not know still needs
// a name to be chosen by.
std::vector<std::string> StreamEntries(const Document& document, const CellEntry* cell) {
  std::vector<std::string> entries = {"All Streams"};
  const int highest = document.HighestStream();
  for (int stream = 0; stream <= highest; ++stream) {
    const auto info =
        cell ? cell->subpictures.at(static_cast<std::size_t>(stream)) : SubpictureStreamInfo{};
    entries.push_back(StreamLabel(stream, info) + " " + DisplayModeNames(info.modes));
  }
  return entries;
}

void FillVcids(const Document& document, const ListFilter& filter, View& view) {
  view.vcids = {"All VCID"};
  for (const Vcid vcid : document.Vcids()) {
    view.vcids.push_back(Format("%d/%d", vcid.vobId, vcid.cellId));
    if (filter.vcid == vcid) view.vcid = static_cast<int>(view.vcids.size()) - 1;
  }
}

void FillSequences(const SubpictureUnit& unit, View& view) {
  view.sequences = {"All DCSQTs"};
  for (std::size_t i = 0; i < unit.state.sequences.size(); ++i) {
    view.sequences.push_back(Format("DCSQT %d", static_cast<int>(i)));
  }
  view.sequence = unit.allSequences ? 0 : unit.currentSequence + 1;
}

void FillSwatches(const SubpictureUnit& unit, const DisplayPalette& palette, View& view) {
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    Swatch& swatch = view.swatches[type];
    swatch.used = unit.state.statistics.pixelCounts[type] > 0;
    swatch.tooltip =
        swatch.used
            ? Format("Shows color used for %s pixels. Click on letter to see only these pixels",
                     kTypeNames[type])
            : Swatch().tooltip;
    swatch.colour = palette.colours[type];
    swatch.alpha = palette.alphas[type];
    swatch.clutEntry = palette.entries[type];
  }
}

void FillClut(const ClutRecord* clut, View& view) {
  if (clut == nullptr) return;
  view.clut = ToRgb(clut->entries);
  const char* const hint = "Shift-Click to modify CLUT";
  view.clutTooltip = clut->languageUnit == 0
                         ? Format("CLUT in use is defined in\r\nPGC %d\r\n%s", clut->pgc, hint)
                         : Format("CLUT in use is defined in\r\nLU %d / PGC %d\r\n%s",
                                  clut->languageUnit, clut->pgc, hint);
}

SubpicturePicture ShownPicture(const SubpictureUnit& unit, DisplayPalette palette,
                               const ClutRecord* clut, const ViewOptions& options) {
  if (options.ignoreTransparency) IgnoreTransparency(unit, palette);
  SubpicturePicture picture = ComposePicture(unit, palette, options.onlyType);
  const auto highlight = FindHighlight(unit, clut, palette, options);
  if (highlight) PaintHighlight(unit, *highlight, options.onlyType, picture);
  return picture;
}

void FillUnit(Document& document, SubpictureUnit& unit, const Preferences& preferences,
              const ViewOptions& options, View& view) {
  const SpuContext context = document.Context();
  const ClutRecord* const clut = ClutOfUnit(document, unit);
  const ClutRecord* const shownClut = options.automaticClut ? nullptr : clut;
  const DisplayPalette palette = MakeDisplayPalette(unit, shownClut, preferences);
  if (!Failed(NeedBitmap(unit, context))) {
    view.picture = ShownPicture(unit, palette, shownClut, options);
  }
  view.hasUnit = true;
  view.text = BuildTextView(unit, options.savedText);
  view.options = options;
  view.buttonCount = static_cast<int>(unit.highlight.buttons.size());
  view.place = BuildPlaceView(unit, preferences, context.standard);
  view.time = BuildTimeView(document, unit);
  view.infoRtf = InfoRtf(unit, context.standard);
  FillSequences(unit, view);
  FillSwatches(unit, palette, view);
  FillClut(clut, view);
  view.textAlpha = MeanTextAlpha(unit, context);
}

}  // namespace

View BuildView(Document& document, const Selection& selection, const Preferences& preferences,
               const ViewOptions& options) {
  View view;
  view.hasSet = document.IsOpen();
  if (!view.hasSet) return view;
  view.title = document.Path();
  view.standard = document.Standard();
  view.count = selection.Count();
  view.index = selection.Index();
  const UnitPointer unit = selection.Current();
  view.streams = StreamEntries(document, unit ? document.Cells().Find(unit->vcid) : nullptr);
  view.stream = selection.filter.stream ? *selection.filter.stream + 1 : 0;
  FillVcids(document, selection.filter, view);
  if (unit) FillUnit(document, Document::Unrecorded(unit), preferences, options, view);
  return view;
}

const ClutRecord* ClutOfUnit(const Document& document, const SubpictureUnit& unit) {
  if (!unit.clut) return nullptr;
  return &document.Cells().cluts.at(static_cast<std::size_t>(*unit.clut));
}

std::string DisplayModeNames(std::uint8_t modes) {
  constexpr std::array<const char*, 4> kNames = {"4:3", "WS", "LB", "P&S"};
  std::string text;
  for (std::size_t bit = 0; bit < kNames.size(); ++bit) {
    if ((modes >> bit & 1) == 0) continue;
    if (!text.empty()) text += '+';
    text += kNames[bit];
  }
  return text;
}

bool OnlyFor4x3(const CellEntry& cell) {
  std::uint8_t modes = 0;
  for (const SubpictureStreamInfo& info : cell.subpictures) modes |= info.modes;
  return modes == kMode4x3;
}

}  // namespace quillomar
