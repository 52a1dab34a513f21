#include "video/video_engine.h"

#include "video/frame_finder.h"
#include "video/playback.h"

namespace quillomar {
namespace {

constexpr const char* kMpeg1Refused =
    "The background video seems to be of type MPEG-1\n"
    "Quillomar can't display MPEG-1 video at this point";

constexpr const char* kLpcmRefused = "Support 16-bit 48KHz or 44.1KHz Stereo Linear PCM Only!";

constexpr std::chrono::milliseconds kPumpInterval{2};

class RealClock final : public PlaybackClock {
 public:
  std::int64_t Now() override {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
  }
  void Sleep(std::int64_t microseconds) override {
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
  }
};

}  // namespace

VideoEngine::VideoEngine(FileSystem& files, Reporter& reporter, AudioOutput* audio,
                         PlaybackClock* clock)
    : files_(files), reporter_(reporter), audio_(audio), clock_(clock) {}

VideoEngine::~VideoEngine() {
  Close();
}

void VideoEngine::Attach(VideoOutlet outlet) {
  outlet_ = std::move(outlet);
}

void VideoEngine::Open(const VobFileSet& set) {
  Close();
  reader_ = DiscReader(files_, set);
}

void VideoEngine::Close() {
  StopPrefetch();
  stop_ = true;
  if (worker_.joinable()) worker_.join();
  reader_ = DiscReader();
  refusedMpeg1_ = false;
  refusedSound_ = false;
  soundRefused_ = false;
  const std::scoped_lock lock(mutex_);
  memory_.Clear();
  current_.reset();
  properties_.reset();
}

bool VideoEngine::Start(Work work) {
  if (running_) return false;
  if (worker_.joinable()) worker_.join();
  stop_ = false;
  running_ = true;
  worker_ = std::thread([this, work = std::move(work)] {
    work();
    running_ = false;
  });
  return true;
}

bool VideoEngine::ShowFrame(const FrameRequest& request) {
  StopPrefetch();
  if (running_) return false;
  if (const FramePointer frame = FindRemembered(request)) {
    SetCurrent(frame);
    Notify(ID_SECTOR_HIT);
    return true;
  }
  return Start([this, request] { Show(request); });
}

bool VideoEngine::Step(int direction) {
  StopPrefetch();
  if (running_ || !CurrentFrame()) return false;
  return Start([this, direction] { ShowNeighbour(direction); });
}

void VideoEngine::Show(const FrameRequest& request) {
  FrameFinder finder(reader_, stop_);
  FramePointer frame = finder.Find(request);
  if (stop_) return;
  TakeProperties(finder.Properties());
  if (frame) {
    const std::scoped_lock lock(mutex_);
    memory_.Keep(request, frame);
  }
  SetCurrent(std::move(frame));
  Notify(ID_SECTOR_HIT);
}

void VideoEngine::ShowNeighbour(int direction) {
  FrameFinder finder(reader_, stop_);
  FramePointer frame = finder.Step(*CurrentFrame(), direction);
  if (stop_) return;
  if (frame) SetCurrent(std::move(frame));
  Notify(ID_SECTOR_HIT);
}

bool VideoEngine::Play(const PlayOptions& options) {
  StopPrefetch();
  if (running_) return false;
  return Start([this, options] { RunPlayback(options); });
}

void VideoEngine::RunPlayback(const PlayOptions& options) {
  RealClock realClock;
  const auto show = [this](FramePointer frame) {
    SetCurrent(std::move(frame));
    if (outlet_.pictureShown) outlet_.pictureShown();
  };
  const auto log = [this](const std::string& text) { reporter_.LogLine(text); };
  Playback playback(reader_, clock_ != nullptr ? *clock_ : realClock, {show, log, audio_},
                    audioStream_, stop_);
  playback.Run(options);
  TakeProperties(playback.Properties());
  if (playback.SoundRefused()) soundRefused_ = true;
  Notify(ID_PLAYBACK_STOPPED);
}

Result VideoEngine::Stop(const std::function<void()>& pump) {
  StopPrefetch();
  stop_ = true;
  return Wait(pump);
}

Result VideoEngine::Wait(const std::function<void()>& pump) {
  const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
  while (running_) {
    if (std::chrono::steady_clock::now() >= deadline) return Result::kFailed;
    if (pump) pump();
    std::this_thread::sleep_for(kPumpInterval);
  }
  if (worker_.joinable()) worker_.join();
  ReportRefusals();
  return Result::kDone;
}

void VideoEngine::Prefetch(std::vector<FrameRequest> requests) {
  StopPrefetch();
  if (running_) return;
  stopPrefetch_ = false;
  prefetcher_ = std::thread([this, requests = std::move(requests)] {
    FrameFinder finder(reader_, stopPrefetch_);
    for (const FrameRequest& request : requests) {
      if (stopPrefetch_) return;
      if (FindRemembered(request)) continue;
      FramePointer frame = finder.Find(request);
      const std::scoped_lock lock(mutex_);
      if (frame) memory_.Keep(request, std::move(frame));
    }
  });
}

void VideoEngine::StopPrefetch() {
  stopPrefetch_ = true;
  if (prefetcher_.joinable()) prefetcher_.join();
}

void VideoEngine::ForgetPictures() {
  StopPrefetch();
  const std::scoped_lock lock(mutex_);
  memory_.Clear();
}

FramePointer VideoEngine::FindRemembered(const FrameRequest& request) {
  const std::scoped_lock lock(mutex_);
  return memory_.Find(request);
}

void VideoEngine::SetCurrent(FramePointer frame) {
  const std::scoped_lock lock(mutex_);
  current_ = std::move(frame);
}

void VideoEngine::TakeProperties(const std::optional<VideoProperties>& properties) {
  if (!properties) return;
  const std::scoped_lock lock(mutex_);
  properties_ = properties;
}

// On the owner's thread, because a decoding thread that waits for an answer could not be joined.
void VideoEngine::ReportRefusals() {
  const auto properties = Properties();
  if (properties && properties->mpeg1 && !refusedMpeg1_) {
    refusedMpeg1_ = true;
    reporter_.ReportError(kMpeg1Refused);
  }
  if (soundRefused_ && !refusedSound_) {
    refusedSound_ = true;
    reporter_.ReportError(kLpcmRefused);
  }
}

void VideoEngine::Notify(VideoNotification notification) {
  if (outlet_.notify) outlet_.notify(notification);
}

std::optional<VideoProperties> VideoEngine::Properties() const {
  const std::scoped_lock lock(mutex_);
  return properties_;
}

FramePointer VideoEngine::CurrentFrame() const {
  const std::scoped_lock lock(mutex_);
  return current_;
}

std::size_t VideoEngine::RememberedBytes() const {
  const std::scoped_lock lock(mutex_);
  return memory_.Size();
}

}  // namespace quillomar
