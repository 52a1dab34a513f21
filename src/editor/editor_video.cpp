// The video behind the subpictures.

#include "base/format.h"
#include "editor/editor.h"
#include "editor/unit_frame.h"
#include "editor/view_builder.h"

namespace quillomar {
namespace {

// Places in the list beside the current one whose pictures are looked for ahead, likeliest first.
constexpr std::array<int, 3> kNeighbours = {1, -1, 2};

}  // namespace

void Editor::OpenVideo() {
  if (session_.preferences.autoForceDisplayVideo != 0) showsVideo_ = true;
  showsEndFrame_ = false;
  video_.Open(document_.Files());
}

void Editor::ShowVideo(bool on) {
  showsVideo_ = on;
  UpdateView();
}

void Editor::ShowEndFrame(bool on) {
  showsEndFrame_ = on;
  UpdateView();
}

void Editor::StepFrame(int direction) {
  playedOut_ = false;
  if (showsVideo_ && view_.hasUnit) video_.Step(direction);
  view_.video.settled = video_.Settled();
}

void Editor::FillVideo() {
  view_.video.available = video_.Available();
  view_.video.shown = showsVideo_;
  view_.video.atEnd = showsEndFrame_;
  view_.video.frame = ShownFrame();
  view_.video.settled = video_.Settled();
  view_.video.playing = video_.Playing();
  view_.video.looping = video_.Playing() && looping_;
  FillAudio();
  if (!video_.Playing()) return;
  screen_.Invalidate();
  view_.picture = screen_.Picture();
}

// What was shown last belongs to a unit that is no longer there.
FramePointer Editor::ShownFrame() {
  return view_.hasUnit || video_.Playing() ? video_.Frame() : nullptr;
}

void Editor::FrameChanged() {
  view_.video.frame = ShownFrame();
  view_.video.settled = true;
  if (VideoHost* const host = frontEnd_.Video()) host->VideoChanged();
}

std::optional<FrameRequest> Editor::FrameOfListed(int index) {
  if (index < 0 || index >= selection_.Count()) return std::nullopt;
  const SubpictureUnit& unit = *selection_.List()[static_cast<std::size_t>(index)];
  if (!showsEndFrame_) return FrameRequestFor(unit);
  return EndFrameRequestFor(unit, NextInStream(document_.Units(), unit).get());
}

void Editor::WantFrame() {
  if (!showsVideo_ || !video_.Available() || video_.Playing()) return;
  const auto request = FrameOfListed(selection_.Index());
  if (!request) return;
  std::vector<FrameRequest> neighbours;
  for (const int step : kNeighbours) {
    if (const auto other = FrameOfListed(selection_.Index() + step)) neighbours.push_back(*other);
  }
  video_.Want(*request, std::move(neighbours));
  view_.video.settled = video_.Settled();
}

void Editor::SaveVideoFrame() {
  FileRequest request{"Save video frame as bitmap (.bmp) file", "bmp Files (*.bmp)|*.bmp||",
                      session_.preferences.lastPpmDir, ""};
  request.forSaving = true;
  const auto paths = frontEnd_.ChooseFiles(request);
  const FramePointer frame = ShownFrame();
  if (paths.empty() || !frame) return;
  if (Failed(SaveFrame(session_.files, paths.front(), *frame))) {
    session_.reporter.ReportError(Format("Couldn't write %s", paths.front().c_str()));
  }
}

}  // namespace quillomar
