// How the video would stand on a television.

#include "editor/editor.h"

namespace quillomar {
namespace {

// The sequence header's aspect code of 16:9 video.
constexpr int kWideAspect = 3;

}  // namespace

void Editor::ChooseScreenMode(ScreenMode mode) {
  screenMode_ = mode;
  UpdateView();
}

// Until one is chosen the mode is that of the video itself.
ScreenMode Editor::CurrentScreenMode() const {
  if (screenMode_) return *screenMode_;
  return view_.aspect == kWideAspect ? ScreenMode::kWide : ScreenMode::k4x3;
}

void Editor::FollowStreamsModes() {
  const UnitPointer unit = selection_.Current();
  if (session_.preferences.autoDisplayMode == 0 || view_.aspect != kWideAspect || !unit) return;
  const CellEntry* const cell = document_.Cells().Find(unit->vcid);
  if (cell == nullptr) return;
  const auto stream = static_cast<std::size_t>(unit->stream);
  screenMode_ = FittingMode(CurrentScreenMode(), cell->subpictures.at(stream).modes);
}

}  // namespace quillomar
