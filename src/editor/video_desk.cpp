#include "editor/video_desk.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/format.h"
#include "editor/audio_choices.h"
#include "editor/unit_frame.h"
#include "editor/view_builder.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// Places in the list beside the current one whose pictures are looked for ahead, likeliest first.
constexpr std::array<int, 3> kNeighbours = {1, -1, 2};
// A loop begins that long before the unit appears and goes on that long after it is gone.
constexpr std::int64_t kLoopMargin = 90000;  // ticks
// Of a unit without an end that no other follows.
constexpr std::int64_t kLoopLength = 5 * std::int64_t{90000};  // ticks

}  // namespace

VideoDesk::VideoDesk(VideoSubject subject)
    : editor_(std::move(subject)),
      control_(
          editor_.session.files, editor_.session.reporter, editor_.frontEnd.Video(),
          {[this] { FrameChanged(); }, [this] { FramePlayed(); }, [this] { PlaybackEnded(); }}) {}

void VideoDesk::Open() {
  if (editor_.session.preferences.autoForceDisplayVideo != 0) shows_ = true;
  showsEndFrame_ = false;
  control_.Open(editor_.document.Files());
}

void VideoDesk::Show(bool on) {
  shows_ = on;
  editor_.updateView();
}

void VideoDesk::ShowEndFrame(bool on) {
  showsEndFrame_ = on;
  editor_.updateView();
}

void VideoDesk::Step(int direction) {
  playedOut_ = false;
  if (shows_ && editor_.view.hasUnit) control_.Step(direction);
  editor_.view.video.settled = control_.Settled();
}

void VideoDesk::Fill() {
  VideoView& video = editor_.view.video;
  video.available = Available();
  video.shown = shows_;
  video.atEnd = showsEndFrame_;
  video.frame = ShownFrame();
  video.settled = control_.Settled();
  video.playing = Playing();
  video.looping = Playing() && looping_;
  FillAudio();
  if (!Playing()) return;
  screen_.Invalidate();
  editor_.view.picture = screen_.Picture();
}

// What was shown last belongs to a unit that is no longer there.
FramePointer VideoDesk::ShownFrame() {
  return editor_.view.hasUnit || Playing() ? control_.Frame() : nullptr;
}

void VideoDesk::FrameChanged() {
  editor_.view.video.frame = ShownFrame();
  editor_.view.video.settled = true;
  TellHost();
}

std::optional<FrameRequest> VideoDesk::FrameOfListed(int index) {
  if (index < 0 || index >= editor_.selection.Count()) return std::nullopt;
  const SubpictureUnit& unit = *editor_.selection.List()[static_cast<std::size_t>(index)];
  if (!showsEndFrame_) return FrameRequestFor(unit);
  return EndFrameRequestFor(unit, NextInStream(editor_.document.Units(), unit).get());
}

void VideoDesk::WantFrame() {
  if (!shows_ || !Available() || Playing()) return;
  const auto request = FrameOfListed(editor_.selection.Index());
  if (!request) return;
  std::vector<FrameRequest> neighbours;
  for (const int step : kNeighbours) {
    if (const auto other = FrameOfListed(editor_.selection.Index() + step))
      neighbours.push_back(*other);
  }
  control_.Want(*request, std::move(neighbours));
  editor_.view.video.settled = control_.Settled();
}

void VideoDesk::SaveFrame() {
  const FramePointer frame = ShownFrame();
  FileRequest request{"Save video frame as bitmap (.bmp) file", "bmp Files (*.bmp)|*.bmp||",
                      editor_.session.preferences.lastPpmDir, ""};
  request.forSaving = true;
  const auto paths = editor_.frontEnd.ChooseFiles(request);
  if (paths.empty() || !frame) return;
  if (Failed(quillomar::SaveFrame(editor_.session.files, paths.front(), *frame))) {
    editor_.session.reporter.ReportError(Format("Couldn't write %s", paths.front().c_str()));
  }
}

void VideoDesk::TogglePlayback(bool loop) {
  if (Playing()) {
    EndPlayback();
    return;
  }
  const PlayOptions options = loop ? LoopOptions() : PlayOptionsFromHere();
  LoadScreen();
  if (!control_.Play(options)) return;
  looping_ = loop;
  playedOut_ = false;
  editor_.updateView();
}

// From the picture shown; after the end of the title from the current unit again.
PlayOptions VideoDesk::PlayOptionsFromHere() {
  PlayOptions options;
  const bool goesOn = shows_ && !playedOut_ && control_.Settled();
  const FramePointer frame = goesOn ? control_.Frame() : nullptr;
  const UnitPointer unit = editor_.selection.Current();
  if (frame) {
    options.from = {frame->navLba, frame->pts, frame->globalTime - std::int64_t{frame->pts}};
  } else if (unit) {
    options.from = FrameRequestFor(*unit);
  }
  options.frameRate = PlaybackRate();
  return options;
}

PlayOptions VideoDesk::LoopOptions() {
  PlayOptions options = PlayOptionsFromHere();
  options.loop = true;
  const UnitPointer unit = editor_.selection.Current();
  if (!unit) return options;
  const auto lead =
      static_cast<std::uint32_t>(std::clamp(unit->globalTime, std::int64_t{0}, kLoopMargin));
  options.from = FrameRequestFor(*unit);
  options.from.pts = unit->state.pts - lead;
  const UnitPointer next = NextInStream(editor_.document.Units(), *unit);
  const std::int64_t untilNext = next ? next->globalTime - unit->globalTime : kLoopLength;
  options.endTime = unit->globalTime + EndTicks(*unit).value_or(untilNext) + kLoopMargin;
  return options;
}

// Every picture, or every second, third, fourth.
double VideoDesk::PlaybackRate() const {
  const int index = editor_.session.preferences.frameDownSampling;
  const auto properties = control_.Properties();
  const double rate = properties ? properties->frameRate : editor_.document.Results().frameRate;
  return index > 0 ? rate / (index + 1.0) : 0;
}

// The stream chosen, else that of the current unit.
void VideoDesk::LoadScreen() {
  const UnitPointer unit = editor_.selection.Current();
  const int stream = editor_.selection.filter.stream.value_or(unit ? unit->stream : 0);
  const UnitList all = editor_.document.Units();
  UnitList units;
  std::copy_if(all.begin(), all.end(), std::back_inserter(units),
               [stream](const UnitPointer& each) { return each->stream == stream; });
  screen_.Load(std::move(units));
}

void VideoDesk::EndPlayback() {
  if (!Playing()) return;
  (void)control_.Stop();
  PlaybackOver();
}

void VideoDesk::Stop() {
  if (!Playing()) return;
  (void)control_.Stop();
  looping_ = false;
  Fill();
}

// The picture that playback came to stays, with the current unit over it.
void VideoDesk::PlaybackOver() {
  looping_ = false;
  if (const auto request = FrameOfListed(editor_.selection.Index())) control_.Keep(*request);
  editor_.updateView();
}

void VideoDesk::PlaybackEnded() {
  playedOut_ = true;
  PlaybackOver();
}

SubpicturePicture VideoDesk::PlayedPicture(const UnitPointer& shown, const UnitMoment& moment) {
  SubpictureUnit& unit = Document::Unrecorded(shown);
  if (Failed(NeedBitmap(unit, editor_.document.Context()))) return {};
  const ClutRecord* const clut =
      editor_.look.automaticClut ? nullptr : ClutOfUnit(editor_.document, unit);
  SubpicturePicture picture =
      ComposePlayed(unit, moment, clut, editor_.session.preferences, editor_.look);
  if (shown != editor_.selection.Current()) unit.ReleasePixels();
  return picture;
}

// The time of a picture is its middle, so that what begins or ends is off by half of one at most.
void VideoDesk::FramePlayed() {
  const FramePointer frame = control_.Frame();
  if (!frame) return;
  const auto paint = [this](const UnitPointer& unit, const UnitMoment& moment) {
    return PlayedPicture(unit, moment);
  };
  const bool changed = screen_.MoveTo(frame->globalTime + frame->duration / 2, paint);
  if (changed && !looping_) FollowPlayback();
  editor_.view.video.frame = frame;
  if (changed) editor_.view.picture = screen_.Picture();
  TellHost();
}

void VideoDesk::FollowPlayback() {
  const UnitList& list = editor_.selection.List();
  const auto played = std::find(list.begin(), list.end(), screen_.Unit());
  if (played == list.end() || !editor_.selection.SetIndex(static_cast<int>(played - list.begin())))
    return;
  editor_.updateView();
}

void VideoDesk::ChooseAudio(int entry) {
  if (entry < 0 || entry >= static_cast<int>(editor_.view.video.audio.size())) return;
  audioEntry_ = entry;
  Fill();
  TellHost();
}

void VideoDesk::StepAudio(int direction) {
  const VideoView& video = editor_.view.video;
  const int count = static_cast<int>(video.audio.size());
  if (count > 0) ChooseAudio((video.audioEntry + direction + count) % count);
}

void VideoDesk::FillAudio() {
  const UnitPointer unit = editor_.selection.Current();
  const CellEntry* const cell = unit ? editor_.document.Cells().Find(unit->vcid) : nullptr;
  const auto choices =
      editor_.document.Files().Empty() ? std::vector<AudioChoice>() : AudioChoicesOf(cell);
  VideoView& video = editor_.view.video;
  video.audio.clear();
  for (const AudioChoice& choice : choices) video.audio.push_back(choice.label);
  const int last = std::max(static_cast<int>(choices.size()) - 1, 0);
  video.audioEntry = std::min(audioEntry_, last);
  const auto entry = static_cast<std::size_t>(video.audioEntry);
  control_.SelectAudio(choices.empty() ? kNoAudio : choices[entry].subStreamId);
}

void VideoDesk::Close() {
  control_.Close();
  screen_.Load({});
}

void VideoDesk::Leave() {
  Stop();
  playedOut_ = false;
}

void VideoDesk::MakeWay(bool filesChange) {
  Stop();
  if (filesChange) {
    control_.StopAndForget();
  } else {
    (void)control_.Stop();
  }
}

void VideoDesk::FollowStream() {
  if (Playing()) LoadScreen();
}

void VideoDesk::TellHost() {
  if (VideoHost* const host = editor_.frontEnd.Video()) host->VideoChanged();
}

}  // namespace quillomar
