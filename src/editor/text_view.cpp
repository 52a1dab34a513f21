#include "editor/text_view.h"

namespace quillomar {
namespace {

TextCharacter ToCharacter(const CharBox& box, const SpuState& state) {
  TextCharacter character{box.ch, box.ch == kUnknownCharacter, box.doubtful, {}};
  const auto corner = [&](int column, int row) {
    const int shift = SlantShift(row, box.lineRefRow, box.lineSlant);
    return FramePoint{state.area.sx + column - shift, state.area.sy + row - state.hiddenRows};
  };
  character.corners = {corner(box.x0, box.y0), corner(box.x1 + 1, box.y0),
                       corner(box.x1 + 1, box.y1 + 1), corner(box.x0, box.y1 + 1)};
  return character;
}

}  // namespace

TextView BuildTextView(const SubpictureUnit& unit, bool showSaved) {
  TextView view;
  view.read = unit.charBoxCount != 0 || !unit.savedOcrText.empty();
  view.showsSaved = showSaved;
  view.lines = showSaved ? unit.savedOcrText : unit.ocrText;
  if (showSaved || unit.charBoxCount <= 0) return view;
  for (const CharBox& box : unit.charBoxes) view.characters.push_back(ToCharacter(box, unit.state));
  return view;
}

std::optional<int> NextDoubtfulBox(const SubpictureUnit& unit, int after) {
  for (int i = after + 1; i < unit.charBoxCount; ++i) {
    const CharBox& box = unit.charBoxes[static_cast<std::size_t>(i)];
    if (box.doubtful || box.ch == kUnknownCharacter) return i;
  }
  return std::nullopt;
}

}  // namespace quillomar
