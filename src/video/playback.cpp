#include "video/playback.h"

#include <algorithm>
#include <cstdlib>

#include "base/format.h"

namespace quillomar {
namespace {

constexpr std::size_t kPicturesAhead = 4;
constexpr std::size_t kMostPictures = 48;  // where sound lies far behind the pictures
constexpr int kSoundAheadMs = 300;
constexpr int kMostSoundMs = 2000;            // while a still picture stands
constexpr std::size_t kMostEarlySound = 256;  // blocks
constexpr int kMostPacksPastEnd = 2000;
constexpr int kPacksAtOnce = 64;
constexpr std::int64_t kLongestSleep = 5000;  // microseconds
constexpr std::int64_t kTicksPerMs = 90;
// A sound device tells its position in steps; only what is further off moves the clock at once.
constexpr std::int64_t kFarOff = 100 * kTicksPerMs;
constexpr int kSmoothing = 16;
constexpr std::int64_t kLongestDrain = 1000000;  // microseconds

std::int64_t TicksOf(std::int64_t microseconds) {
  return microseconds * kTicksPerMs / 1000;
}

}  // namespace

Playback::Playback(DiscReader& reader, PlaybackClock& clock, PlaybackOutlet outlet,
                   const std::atomic<int>& audioStream, const std::atomic<bool>& stop)
    : clock_(clock),
      outlet_(std::move(outlet)),
      audioStream_(audioStream),
      stop_(stop),
      source_(reader, audioStream, outlet_.log),
      audio_(outlet_.audio) {}

void Playback::Run(const PlayOptions& options) {
  options_ = options;
  started_ = clock_.Now();
  do {
    shown_ = 0;
    PlayOnce();
  } while (options.loop && shown_ > 0 && !stop_);
  audio_.Reset();
  ShowLastAsStill();
}

void Playback::PlayOnce() {
  if (Failed(source_.Begin(options_.from))) return;
  pictures_.clear();
  shownLast_.reset();
  earlySound_.clear();
  atEnd_ = false;
  pastEnd_ = false;
  soundPastEnd_ = false;
  packsPastEnd_ = 0;
  begun_ = false;
  loggedHolding_ = -1;
  while (!stop_) {
    Fill();
    audio_.Pump();
    if (properties_ && properties_->mpeg1) break;
    if (!pictures_.empty()) {
      ShowOrWait();
    } else if (atEnd_) {
      break;
    } else {
      clock_.Sleep(kLongestSleep);
    }
  }
  Drain();
}

bool Playback::WantsMore() {
  const int queued = audio_.QueuedMs();
  if (pastEnd_) return queued < kMostSoundMs;
  const bool soundShort = audio_.Playing() && queued < kSoundAheadMs;
  return (pictures_.size() < kPicturesAhead && queued < kMostSoundMs) ||
         (soundShort && pictures_.size() < kMostPictures);
}

// The sound of the last pictures may lie a good way behind them.
bool Playback::SoundIsComplete() const {
  return !audio_.Playing() || soundPastEnd_ || packsPastEnd_ > kMostPacksPastEnd;
}

// Few packs at once, so that sound is handed on in between.
void Playback::Fill() {
  for (int i = 0; i < kPacksAtOnce && !atEnd_ && !stop_ && WantsMore(); ++i) {
    if (pastEnd_) ++packsPastEnd_;
    atEnd_ = (pastEnd_ && SoundIsComplete()) || !source_.Read();
    TakeDecoded();
  }
}

void Playback::TakeDecoded() {
  while (auto picture = source_.TakePicture()) {
    const std::int64_t start =
        options_.from.pts ? *options_.from.pts + options_.from.timeOffset : picture->time;
    // Pictures before the first are decoded for the sake of those that refer to them.
    if (!begun_ && picture->time + picture->duration <= start) continue;
    if (!begun_) Begin(std::max(start, picture->time));
    pastEnd_ = options_.endTime && picture->time >= *options_.endTime;
    if (!pastEnd_) pictures_.push_back(std::move(*picture));
  }
  properties_ = source_.Properties();
  if (source_.SoundRefused()) outlet_.soundRefused();
  if (heardStream_ != audioStream_ && begun_) {
    heardStream_ = audioStream_;
    audio_.DropPending();
  }
  while (auto sound = source_.TakeSound()) {
    earlySound_.push_back(std::move(*sound));
    if (earlySound_.size() > kMostEarlySound) earlySound_.pop_front();
  }
  if (!begun_) return;
  for (AudioBlock& sound : earlySound_) {
    soundPastEnd_ = options_.endTime && sound.time >= *options_.endTime;
    if (!soundPastEnd_) audio_.Add(std::move(sound), MediaTime());
  }
  earlySound_.clear();
}

void Playback::Begin(std::int64_t time) {
  begun_ = true;
  base_ = time - TicksOf(clock_.Now());
  lastTime_ = lastEnd_ = time;
  lastShown_ = clock_.Now();
  heardStream_ = audioStream_;
  audio_.StartAt(time);
}

std::int64_t Playback::MediaTime() {
  const std::int64_t now = TicksOf(clock_.Now());
  if (const auto heard = audio_.HeardTime()) {
    const std::int64_t off = *heard - (base_ + now);
    base_ += std::abs(off) > kFarOff ? off : off / kSmoothing;
  }
  return base_ + now;
}

void Playback::ShowOrWait() {
  const std::int64_t now = MediaTime();
  const DecodedPicture picture = pictures_.front();
  if (picture.time > now) {
    WaitFor(picture, picture.time - now);
    return;
  }
  pictures_.pop_front();
  const bool late = now - picture.time > picture.duration && !pictures_.empty();
  const bool tooMany = options_.frameRate > 0 && shown_ > 0 &&
                       static_cast<double>(2 * (picture.time - lastTime_) + picture.duration) <
                           2 * 90000 / options_.frameRate;
  if (late) {
    Discard(picture);
  } else if (!tooMany) {
    Show(picture);
  }
}

void Playback::WaitFor(const DecodedPicture& picture, std::int64_t ticks) {
  const std::int64_t waited = TicksOf(clock_.Now() - lastShown_);
  const bool overdue = waited > picture.time - lastTime_ + picture.duration;
  if (overdue && loggedHolding_ != picture.time) {
    loggedHolding_ = picture.time;
    Log("Holding", picture.time, picture.time - ticks);
  }
  clock_.Sleep(std::clamp(ticks * 1000 / kTicksPerMs, std::int64_t{1}, kLongestSleep));
}

void Playback::Show(DecodedPicture picture) {
  lastTime_ = picture.time;
  lastEnd_ = picture.time + picture.duration;
  lastShown_ = clock_.Now();
  ++shown_;
  outlet_.show(std::make_shared<const VideoFrame>(source_.Convert(picture, false)));
  shownLast_ = std::move(picture);
}

// It stays on the screen, and combs are seen there.
void Playback::ShowLastAsStill() {
  if (!shownLast_ || !shownLast_->interlaced) return;
  outlet_.show(std::make_shared<const VideoFrame>(source_.Convert(*shownLast_, true)));
}

void Playback::Discard(const DecodedPicture& picture) {
  Log("Discarding", picture.time, MediaTime());
}

void Playback::Log(const char* what, std::int64_t videoTime, std::int64_t now) {
  const auto elapsed = static_cast<int>((clock_.Now() - started_) / 1000);
  const auto delay = static_cast<int>((videoTime - now) / kTicksPerMs);
  outlet_.log(Format("%d ms %s frame VPTS %d AudioPTS %d AVDelayMs %d R %d W %d Queued %dms",
                     elapsed, what, static_cast<int>(videoTime), static_cast<int>(now), delay,
                     audio_.ReadPosition(), audio_.WritePosition(), audio_.QueuedMs()));
}

// The last picture stays its time, and what is left of the sound is heard.
void Playback::Drain() {
  const std::int64_t began = clock_.Now();
  while (!stop_ && begun_ && clock_.Now() - began < kLongestDrain) {
    audio_.Pump();
    if (MediaTime() >= lastEnd_ && audio_.QueuedMs() == 0) return;
    clock_.Sleep(kLongestSleep);
  }
}

}  // namespace quillomar
