#include "cli/unit_json.h"

#include "base/format.h"
#include "cli/json.h"
#include "editor/time_code.h"
#include "editor/view_builder.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// The stream's language in the unit's cell; empty when the IFO does not tell.
std::string LanguageOf(const Document& document, const SubpictureUnit& unit) {
  const CellEntry* const cell = document.Cells().Find(unit.vcid);
  if (cell == nullptr) return {};
  const auto& info = cell->subpictures.at(static_cast<std::size_t>(unit.stream));
  return info.found && info.language != "  " ? info.language : std::string();
}

std::string LanguageJson(const std::string& language) {
  return language.empty() ? "null" : JsonString(language);
}

std::string ValuesJson(const std::optional<PixelTypeValues>& values) {
  if (!values) return "null";
  std::vector<std::string> items;
  for (const auto value : *values) items.push_back(std::to_string(value));
  return JsonArray(items);
}

std::string ClutJson(const ClutRecord* clut) {
  if (clut == nullptr) return "null";
  std::vector<std::string> items;
  for (const Rgb colour : ToRgb(clut->entries)) items.push_back(JsonString(ColourText(colour)));
  return JsonArray(items);
}

}  // namespace

std::string ColourText(Rgb colour) {
  return Format("#%02x%02x%02x", colour.r, colour.g, colour.b);
}

std::string UnitJson(Document& document, SubpictureUnit& unit) {
  const SpuContext context = document.Context();
  (void)NeedBitmap(unit, context);  // a unit without a bitmap has no spare room to tell
  unit.ReleasePixels();
  (void)SelectControlSequence(unit, 0);
  const SpuState& state = unit.state;
  const int duration = DurationMs(unit, context.standard);
  return JsonObject()
      .Add("number", unit.number)
      .Add("numberInStream", unit.numberInStream)
      .Add("stream", static_cast<int>(unit.SubStreamId()))
      .Add("language", LanguageJson(LanguageOf(document, unit)))
      .Add("vob", static_cast<int>(unit.vcid.vobId))
      .Add("cell", static_cast<int>(unit.vcid.cellId))
      .Add("lba", static_cast<long long>(unit.Lba()))
      .Add("pts", static_cast<long long>(state.pts))
      .Add("startMs", static_cast<long long>(TicksToMs(unit.globalTime, context.standard)))
      .Add("durationMs", duration < 0 ? std::string("null") : std::to_string(duration))
      .Add("sx", static_cast<int>(state.area.sx))
      .Add("ex", static_cast<int>(state.area.ex))
      .Add("sy", static_cast<int>(state.area.sy))
      .Add("ey", static_cast<int>(state.area.ey))
      .Add("forced", IsForced(unit))
      .Add("sequences", static_cast<int>(state.sequences.size()))
      .Add("packs", static_cast<int>(unit.packs.size()))
      .Add("size", state.TotalSize())
      .Add("freeRoom", state.freeRoom)
      .Add("spareRoom", state.spareRoom)
      .Add("colours", ValuesJson(unit.currentColours))
      .Add("alphas", ValuesJson(unit.currentAlphas))
      .Add("clut", ClutJson(ClutOfUnit(document, unit)))
      .Add("buttons", static_cast<int>(unit.highlight.buttons.size()))
      .Text();
}

std::string UnitLine(const Document& document, const SubpictureUnit& unit) {
  const VideoStandard standard = document.Standard();
  const std::string language = LanguageOf(document, unit);
  const std::string times =
      FormatSrtTimeLine(unit.globalTime, DurationMs(unit, standard), standard);
  std::string line = Format("%5d  0x%02x %-2s  %-29s  %dx%d at %d,%d", unit.number,
                            unit.SubStreamId(), language.c_str(), times.c_str(), unit.state.width,
                            unit.state.height, unit.state.area.sx, unit.state.area.sy);
  if (IsForced(unit)) line += "  forced";
  if (unit.HasButtons()) {
    line += Format("  %d buttons", static_cast<int>(unit.highlight.buttons.size()));
  }
  return line;
}

}  // namespace quillomar
