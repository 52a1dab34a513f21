#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

#include "editor/video_host.h"
#include "video/video_engine.h"

namespace quillomar {

// Keeps the video engine at what the editor wants to see. Lives on the editor's thread, where all
// its events come too; without a host it does nothing.
class VideoControl {
 public:
  struct Events {
    std::function<void()> found;    // Frame() is what was asked for
    std::function<void()> shown;    // playback has shown another frame
    std::function<void()> stopped;  // playback has ended by itself
  };
  VideoControl(FileSystem& files, Reporter& reporter, VideoHost* host, Events events);

  void Open(const VobFileSet& set);
  void Close();
  // There is a set whose video can be asked for.
  [[nodiscard]] bool Available() const { return open_; }

  // Asks for a picture, unless it was the last one asked for; once it is there, those that may be
  // wanted next are looked for. Ends whatever runs.
  void Want(const FrameRequest& request, std::vector<FrameRequest> neighbours);
  // The picture shown passes for this one from now on.
  void Keep(const FrameRequest& request) { wanted_ = request; }
  // What is wanted next is looked for even where it was asked for last.
  void Renew() { wanted_.reset(); }
  // The picture shown is the one asked for last.
  [[nodiscard]] bool Settled() const { return !finding_; }
  // To the neighbouring picture; ignored while something runs.
  void Step(int direction);

  bool Play(const PlayOptions& options);
  [[nodiscard]] bool Playing() const { return playing_; }
  void SelectAudio(int subStreamId);

  // Ends what runs, playback without its event. What was asked for and has not come is forgotten.
  // Fails when it does not end, as on a disk that hangs.
  Result Stop();
  // Before a job that writes: also forgets every picture but the one shown.
  void StopAndForget();

  [[nodiscard]] FramePointer Frame() const;
  [[nodiscard]] std::optional<VideoProperties> Properties() const;

 private:
  void Receive(VideoNotification notification, int request);
  void TakeFound();
  void TakePlayed();
  void BeginRequest() { ++request_; }
  [[nodiscard]] std::function<void()> Pump() const;

  VideoHost* host_;
  Events events_;
  std::vector<FrameRequest> neighbours_;
  std::optional<FrameRequest> wanted_;  // the picture shown or on its way
  bool finding_ = false;                // it has not come yet
  bool open_ = false;
  bool playing_ = false;
  bool waiting_ = false;  // inside the engine, which lets the host live
  // Notifications of requests before this one mean nothing any more.
  std::atomic<int> request_ = 0;
  std::atomic<bool> playedPosted_ = false;
  std::optional<VideoEngine> engine_;  // last: its threads use the others
};

}  // namespace quillomar
