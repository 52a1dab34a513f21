// Playing the title with its subpictures.

#include <algorithm>
#include <iterator>

#include "editor/editor.h"
#include "editor/unit_frame.h"
#include "editor/view_builder.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

// A loop begins that long before the unit appears and goes on that long after it is gone.
constexpr std::int64_t kLoopMargin = 90000;  // ticks
// Of a unit without an end that no other follows.
constexpr std::int64_t kLoopLength = 5 * std::int64_t{90000};  // ticks

}  // namespace

void Editor::PlayOrStop() {
  TogglePlayback(false);
}
void Editor::LoopOrStop() {
  TogglePlayback(true);
}

void Editor::TogglePlayback(bool loop) {
  if (video_.Playing()) {
    (void)video_.Stop();
    PlaybackOver();
    return;
  }
  const PlayOptions options = loop ? LoopOptions() : PlayOptionsFromHere();
  LoadScreen();
  if (!video_.Play(options)) return;
  looping_ = loop;
  playedOut_ = false;
  UpdateView();
}

// From the picture shown; after the end of the title from the current unit again.
PlayOptions Editor::PlayOptionsFromHere() {
  PlayOptions options;
  const bool goesOn = showsVideo_ && !playedOut_ && video_.Settled();
  const FramePointer frame = goesOn ? video_.Frame() : nullptr;
  const UnitPointer unit = selection_.Current();
  if (frame) {
    options.from = {frame->navLba, frame->pts, frame->globalTime - std::int64_t{frame->pts}};
  } else if (unit) {
    options.from = FrameRequestFor(*unit);
  }
  options.frameRate = PlaybackRate();
  return options;
}

PlayOptions Editor::LoopOptions() {
  PlayOptions options = PlayOptionsFromHere();
  options.loop = true;
  const UnitPointer unit = selection_.Current();
  if (!unit) return options;
  const auto lead =
      static_cast<std::uint32_t>(std::clamp(unit->globalTime, std::int64_t{0}, kLoopMargin));
  options.from = FrameRequestFor(*unit);
  options.from.pts = unit->state.pts - lead;
  const UnitPointer next = NextInStream(document_.Units(), *unit);
  const std::int64_t untilNext = next ? next->globalTime - unit->globalTime : kLoopLength;
  options.endTime = unit->globalTime + EndTicks(*unit).value_or(untilNext) + kLoopMargin;
  return options;
}

// Every picture, or every second, third, fourth.
double Editor::PlaybackRate() const {
  const int index = session_.preferences.frameDownSampling;
  const auto properties = video_.Properties();
  const double rate = properties ? properties->frameRate : document_.Results().frameRate;
  return index > 0 ? rate / (index + 1) : 0;
}

// The stream chosen, else that of the current unit.
void Editor::LoadScreen() {
  const UnitPointer unit = selection_.Current();
  const int stream = selection_.filter.stream.value_or(unit ? unit->stream : 0);
  const UnitList all = document_.Units();
  UnitList units;
  std::copy_if(all.begin(), all.end(), std::back_inserter(units),
               [stream](const UnitPointer& each) { return each->stream == stream; });
  screen_.Load(std::move(units));
}

void Editor::StopPlayback() {
  if (!video_.Playing()) return;
  (void)video_.Stop();
  looping_ = false;
  FillVideo();
}

// The picture that playback came to stays, with the current unit over it.
void Editor::PlaybackOver() {
  looping_ = false;
  if (const auto request = FrameOfListed(selection_.Index())) video_.Keep(*request);
  UpdateView();
}

void Editor::PlaybackEnded() {
  playedOut_ = true;
  PlaybackOver();
}

SubpicturePicture Editor::PlayedPicture(const UnitPointer& shown, const UnitMoment& moment) {
  SubpictureUnit& unit = Document::Unrecorded(shown);
  if (Failed(NeedBitmap(unit, document_.Context()))) return {};
  const ClutRecord* const clut = look_.automaticClut ? nullptr : ClutOfUnit(document_, unit);
  SubpicturePicture picture = ComposePlayed(unit, moment, clut, session_.preferences, look_);
  if (shown != selection_.Current()) unit.ReleasePixels();
  return picture;
}

// The time of a picture is its middle, so that what begins or ends is off by half of one at most.
void Editor::FramePlayed() {
  const FramePointer frame = video_.Frame();
  if (!frame) return;
  const auto paint = [this](const UnitPointer& unit, const UnitMoment& moment) {
    return PlayedPicture(unit, moment);
  };
  const bool changed = screen_.MoveTo(frame->globalTime + frame->duration / 2, paint);
  if (changed && !looping_) FollowPlayback();
  view_.video.frame = frame;
  if (changed) view_.picture = screen_.Picture();
  if (VideoHost* const host = frontEnd_.Video()) host->VideoChanged();
}

void Editor::FollowPlayback() {
  const UnitList& list = selection_.List();
  const auto played = std::find(list.begin(), list.end(), screen_.Unit());
  if (played == list.end() || !selection_.SetIndex(static_cast<int>(played - list.begin()))) return;
  UpdateView();
}

void Editor::ChooseAudio(int entry) {
  if (entry < 0 || entry >= static_cast<int>(view_.video.audio.size())) return;
  audioEntry_ = entry;
  FillVideo();
  if (VideoHost* const host = frontEnd_.Video()) host->VideoChanged();
}

void Editor::StepAudio(int direction) {
  const int count = static_cast<int>(view_.video.audio.size());
  if (count > 0) ChooseAudio((view_.video.audioEntry + direction + count) % count);
}

void Editor::NextAudio() {
  StepAudio(1);
}
void Editor::PreviousAudio() {
  StepAudio(-1);
}

void Editor::FillAudio() {
  const UnitPointer unit = selection_.Current();
  const CellEntry* const cell = unit ? document_.Cells().Find(unit->vcid) : nullptr;
  const auto choices =
      document_.Files().Empty() ? std::vector<AudioChoice>() : AudioChoicesOf(cell);
  view_.video.audio.clear();
  for (const AudioChoice& choice : choices) view_.video.audio.push_back(choice.label);
  const int last = std::max(static_cast<int>(choices.size()) - 1, 0);
  view_.video.audioEntry = std::min(audioEntry_, last);
  video_.SelectAudio(choices.empty()
                         ? kNoAudio
                         : choices[static_cast<std::size_t>(view_.video.audioEntry)].subStreamId);
}

}  // namespace quillomar
