#include "editor/playback_screen.h"

#include <algorithm>

#include "editor/highlight.h"

namespace quillomar {
namespace {

constexpr int kOpaque = 15;

void Apply(const SpuCommand& command, UnitMoment& moment) {
  switch (command.code) {
    case kForcedStart:
    case kStart:
      moment.on = true;
      break;
    case kStop:
      moment.on = false;
      break;
    case kSetColour:
      moment.colours = command.arguments;
      break;
    case kSetContrast:
      moment.alphas = command.arguments;
      break;
    default:
      break;
  }
}

void SetColours(const PixelTypeValues& entries, const ClutRecord* clut, DisplayPalette& palette) {
  if (clut == nullptr) return;
  for (std::size_t type = 0; type < kPixelTypes; ++type) {
    palette.colours[type] = ToRgb(clut->entries.at(entries[type] & 0xFU));
  }
}

void SetAlphas(const PixelTypeValues& alphas, DisplayPalette& palette) {
  std::copy(alphas.begin(), alphas.end(), palette.alphas.begin());
}

DisplayPalette PaletteOf(const UnitMoment& moment, const ClutRecord* clut,
                         const Preferences& preferences) {
  DisplayPalette palette;
  palette.colours = AutomaticColours(AutomaticDefaults(preferences));
  palette.alphas.fill(kOpaque);
  if (moment.colours) SetColours(*moment.colours, clut, palette);
  if (moment.alphas) SetAlphas(*moment.alphas, palette);
  return palette;
}

// A column's colours hold up to where the next one begins.
void PaintBand(const SubpictureUnit& unit, const ColconBand& band, const ClutRecord* clut,
               const DisplayPalette& palette, SubpicturePicture& picture) {
  for (std::size_t i = 0; i < band.columns.size(); ++i) {
    const ColconColumn& column = band.columns[i];
    const int end = i + 1 < band.columns.size() ? band.columns[i + 1].startColumn : kPictureWidth;
    ShownHighlight area{palette, column.startColumn, band.topLine, end - column.startColumn,
                        band.bottomLine - band.topLine + 1};
    SetColours(column.colours, clut, area.palette);
    SetAlphas(column.alphas, area.palette);
    PaintHighlight(unit, area, std::nullopt, picture);
  }
}

}  // namespace

UnitMoment MomentOf(const SubpictureUnit& unit, std::int64_t ticks) {
  UnitMoment moment;
  const auto& sequences = unit.state.sequences;
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    if (std::int64_t{sequences[i].delay} * kDelayUnitTicks > ticks) break;
    moment.sequence = static_cast<int>(i);
    for (const SpuCommand& command : sequences[i].commands) Apply(command, moment);
  }
  for (const ColconTable& table : unit.state.colconTables) {
    if (table.sequence <= moment.sequence) moment.bands = &table;
  }
  return moment;
}

SubpicturePicture ComposePlayed(const SubpictureUnit& unit, const UnitMoment& moment,
                                const ClutRecord* clut, const Preferences& preferences,
                                const ViewOptions& options) {
  const DisplayPalette palette = PaletteOf(moment, clut, preferences);
  SubpicturePicture picture = ComposePicture(unit, palette, std::nullopt);
  if (moment.bands != nullptr) {
    for (const ColconBand& band : moment.bands->bands) {
      PaintBand(unit, band, clut, palette, picture);
    }
  }
  ViewOptions selected;
  selected.buttonLook = ButtonLook::kSelected;
  selected.button = options.button;
  const auto highlight = FindHighlight(unit, clut, palette, selected);
  if (highlight) PaintHighlight(unit, *highlight, std::nullopt, picture);
  return picture;
}

void PlaybackScreen::Load(UnitList units) {
  units_ = std::move(units);
  std::stable_sort(units_.begin(), units_.end(), [](const UnitPointer& a, const UnitPointer& b) {
    return a->globalTime < b->globalTime;
  });
  unit_.reset();
  picture_ = {};
  Invalidate();
}

bool PlaybackScreen::MoveTo(std::int64_t time, const Painter& paint) {
  const auto after = std::upper_bound(
      units_.begin(), units_.end(), time,
      [](std::int64_t value, const UnitPointer& unit) { return value < unit->globalTime; });
  const UnitPointer unit = after == units_.begin() ? nullptr : *(after - 1);
  const UnitMoment moment = unit ? MomentOf(*unit, time - unit->globalTime) : UnitMoment();
  if (unit == unit_ && drawn_ == moment.sequence) return false;
  unit_ = unit;
  drawn_ = moment.sequence;
  picture_ = moment.on ? paint(unit, moment) : SubpicturePicture();
  return true;
}

}  // namespace quillomar
