#include "editor/video_control.h"

namespace quillomar {
namespace {

// Holds a flag up for as long as it lives.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
  ~Raised() { flag_ = false; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
};

}  // namespace

VideoControl::VideoControl(FileSystem& files, Reporter& reporter, VideoHost* host, Events events)
    : host_(host), events_(std::move(events)) {
  if (host == nullptr) return;
  engine_.emplace(files, reporter, host->Sound(), host->Clock());
  VideoOutlet outlet;
  outlet.notify = [this](VideoNotification notification) {
    host_->Post(
        [this, notification, request = request_.load()] { Receive(notification, request); });
  };
  outlet.pictureShown = [this] {
    if (!playedPosted_.exchange(true)) host_->Post([this] { TakePlayed(); });
  };
  engine_->Attach(std::move(outlet));
}

std::function<void()> VideoControl::Pump() const {
  return [this] { host_->Pump(); };
}

void VideoControl::Open(const VobFileSet& set) {
  Close();
  if (!engine_ || set.Empty()) return;
  engine_->Open(set);
  open_ = true;
}

void VideoControl::Close() {
  if (!open_) return;
  (void)Stop();
  engine_->Close();
  wanted_.reset();
  neighbours_.clear();
  open_ = false;
}

void VideoControl::Want(const FrameRequest& request, std::vector<FrameRequest> neighbours) {
  if (!open_ || waiting_) return;
  neighbours_ = std::move(neighbours);
  if (wanted_ == request || Failed(Stop())) return;
  BeginRequest();
  if (!engine_->ShowFrame(request)) return;
  wanted_ = request;
  finding_ = true;
  // A remembered picture is there at once; showing the old one in between would only flicker.
  if (!engine_->Running()) TakeFound();
}

void VideoControl::Step(int direction) {
  if (!open_ || waiting_ || playing_ || engine_->Running()) return;
  BeginRequest();
  finding_ = engine_->Step(direction);
}

bool VideoControl::Play(const PlayOptions& options) {
  if (!open_ || Failed(Stop())) return false;
  BeginRequest();
  wanted_.reset();
  playing_ = engine_->Play(options);
  return playing_;
}

void VideoControl::SelectAudio(int subStreamId) {
  if (engine_) engine_->SelectAudio(subStreamId);
}

Result VideoControl::Stop() {
  if (!open_) return Result::kDone;
  if (waiting_) return Result::kFailed;
  const Raised waiting(waiting_);
  BeginRequest();
  if (finding_) wanted_.reset();
  finding_ = false;
  playing_ = false;
  const Result stopped = engine_->Stop(Pump());
  // What was posted on the thread's way out may still be on its way.
  BeginRequest();
  return stopped;
}

void VideoControl::StopAndForget() {
  if (!open_) return;
  (void)Stop();
  engine_->ForgetPictures();
  wanted_.reset();
}

void VideoControl::Receive(VideoNotification notification, int request) {
  if (request != request_ || waiting_) return;
  switch (notification) {
    case ID_SECTOR_HIT:
      TakeFound();
      break;
    case ID_PLAYBACK_STOPPED:
      playing_ = false;
      {
        const Raised waiting(waiting_);
        (void)engine_->Wait(Pump());
      }
      events_.stopped();
      break;
  }
}

void VideoControl::TakeFound() {
  finding_ = false;
  BeginRequest();
  {
    const Raised waiting(waiting_);
    (void)engine_->Wait(Pump());
  }
  events_.found();
  engine_->Prefetch(neighbours_);
}

void VideoControl::TakePlayed() {
  playedPosted_ = false;
  if (!playing_ || waiting_) return;
  engine_->ReportRefusals();
  if (playing_) events_.shown();
}

FramePointer VideoControl::Frame() const {
  return open_ ? engine_->CurrentFrame() : nullptr;
}

std::optional<VideoProperties> VideoControl::Properties() const {
  return open_ ? engine_->Properties() : std::nullopt;
}

}  // namespace quillomar
