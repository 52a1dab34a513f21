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

// Fails when it is still so after the longest wait.
Result WaitWhile(const std::atomic<bool>& running, const std::function<void()>& pump) {
  const auto deadline = std::chrono::steady_clock::now() + VideoEngine::kLongestWait;
  while (running) {
    if (std::chrono::steady_clock::now() >= deadline) return Result::kFailed;
    if (pump) pump();
    std::this_thread::sleep_for(kPumpInterval);
  }
  return Result::kDone;
}

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

void VideoEngine::JoinAll() {
  stopPrefetch_ = true;
  stop_ = true;
  if (prefetcher_.joinable()) prefetcher_.join();
  if (worker_.joinable()) worker_.join();
}

void VideoEngine::Close() {
  JoinAll();
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
  if (Failed(StopPrefetch()) || running_) return false;
  if (const FramePointer frame = FindRemembered(request)) {
    SetCurrent(frame);
    Notify(ID_SECTOR_HIT);
    return true;
  }
  return Start([this, request] { Show(request); });
}

bool VideoEngine::Step(int direction) {
  if (Failed(StopPrefetch()) || running_ || !CurrentFrame()) return false;
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
  if (Failed(StopPrefetch()) || running_) return false;
  return Start([this, options] { RunPlayback(options); });
}

void VideoEngine::RunPlayback(const PlayOptions& options) {
  RealClock realClock;
  const auto show = [this](FramePointer frame) {
    SetCurrent(std::move(frame));
    if (outlet_.pictureShown) outlet_.pictureShown();
  };
  const auto log = [this](const std::string& text) { reporter_.LogLine(text); };
  const auto refuse = [this] { soundRefused_ = true; };
  Playback playback(reader_, clock_ != nullptr ? *clock_ : realClock, {show, log, refuse, audio_},
                    audioStream_, stop_);
  playback.Run(options);
  TakeProperties(playback.Properties());
  Notify(ID_PLAYBACK_STOPPED);
}

Result VideoEngine::Stop(const std::function<void()>& pump) {
  stop_ = true;
  const Result prefetch = StopPrefetch(pump);
  const Result worker = Wait(pump);
  return Failed(prefetch) ? prefetch : worker;
}

Result VideoEngine::Wait(const std::function<void()>& pump) {
  if (Failed(WaitWhile(running_, pump))) return Result::kFailed;
  if (worker_.joinable()) worker_.join();
  ReportRefusals();
  return Result::kDone;
}

void VideoEngine::Prefetch(std::vector<FrameRequest> requests) {
  if (Failed(StopPrefetch()) || running_) return;
  stopPrefetch_ = false;
  prefetching_ = true;
  prefetcher_ = std::thread([this, requests = std::move(requests)] {
    FrameFinder finder(reader_, stopPrefetch_);
    for (const FrameRequest& request : requests) {
      if (stopPrefetch_) break;
      if (FindRemembered(request)) continue;
      FramePointer frame = finder.Find(request);
      const std::scoped_lock lock(mutex_);
      if (frame && !stopPrefetch_) memory_.Keep(request, std::move(frame));
    }
    prefetching_ = false;
  });
}

Result VideoEngine::StopPrefetch(const std::function<void()>& pump) {
  stopPrefetch_ = true;
  if (Failed(WaitWhile(prefetching_, pump))) return Result::kFailed;
  if (prefetcher_.joinable()) prefetcher_.join();
  return Result::kDone;
}

void VideoEngine::ForgetPictures() {
  (void)StopPrefetch();
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
