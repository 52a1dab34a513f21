#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "base/file.h"
#include "base/reporting.h"
#include "base/result.h"
#include "dvd/vob_file_set.h"
#include "video/disc_reader.h"
#include "video/frame_memory.h"
#include "video/playback_options.h"
#include "video/video_frame.h"

namespace quillomar {

enum VideoNotification {
  ID_SECTOR_HIT = 5,        // the picture asked for is there, or turned out not to be
  ID_PLAYBACK_STOPPED = 7,  // playback has ended
};

// Where the engine's output goes. Called from any thread, also from within a request: they may only
// pass things on to the owner's own thread.
struct VideoOutlet {
  std::function<void(VideoNotification)> notify;
  std::function<void()> pictureShown = {};  // by playback: there is a new current frame
};

// The video behind the subpictures. All operations are for one thread, the owner's; each request
// works on a decoding thread of its own, and a request while that runs is ignored.
class VideoEngine {
 public:
  static constexpr std::chrono::milliseconds kLongestWait{1000};
  static constexpr std::size_t kMemoryBudget = std::size_t{48} << 20;  // bytes of pictures

  // `audio` and `clock` must outlive the engine; without an output playback is silent, without a
  // clock it takes the real time.
  VideoEngine(FileSystem& files, Reporter& reporter, AudioOutput* audio = nullptr,
              PlaybackClock* clock = nullptr);
  // Waits for the decoding thread, however long that takes.
  ~VideoEngine();
  VideoEngine(const VideoEngine&) = delete;
  VideoEngine& operator=(const VideoEngine&) = delete;

  void Attach(VideoOutlet outlet);
  // The set whose video is shown from now on, laid out; opens its files again for reading. Stops
  // what runs and forgets all pictures.
  void Open(const VobFileSet& set);
  void Close();

  // Each returns false when it was ignored, also where prefetching does not end. They end with
  // ID_SECTOR_HIT unless stopped.
  bool ShowFrame(const FrameRequest& request);
  // To the next (1) or the previous (-1) picture; at the end of the set the picture stays.
  bool Step(int direction);

  // Plays picture and sound; ends with ID_PLAYBACK_STOPPED, whatever ends it.
  bool Play(const PlayOptions& options);
  // Sub-stream id of the sound; kNoAudio for none. Takes effect at once while playing.
  void SelectAudio(int subStreamId) { audioStream_ = subStreamId; }

  // Asks what runs to end and waits for it, at most kLongestWait, calling `pump` meanwhile. Fails
  // when it still runs then; until it has ended all requests are ignored. Reports refusals.
  Result Stop(const std::function<void()>& pump = {});
  // Waits alike, without asking it to end.
  Result Wait(const std::function<void()>& pump = {});
  [[nodiscard]] bool Running() const { return running_; }
  // Says with a message what turned out not to be shown or heard, once for each set.
  void ReportRefusals();

  // Finds pictures in the background that may be asked for next, in this order. Any later operation
  // ends it.
  void Prefetch(std::vector<FrameRequest> requests);
  // Ends prefetching and drops every picture held, since the files are about to change.
  void ForgetPictures();

  void SetVisible(bool visible) { visible_ = visible; }
  [[nodiscard]] bool Visible() const { return visible_; }
  // Nothing until a picture has been decoded.
  [[nodiscard]] std::optional<VideoProperties> Properties() const;
  // Null without a picture.
  [[nodiscard]] FramePointer CurrentFrame() const;
  // Bytes that remembered pictures take.
  [[nodiscard]] std::size_t RememberedBytes() const;

 private:
  using Work = std::function<void()>;
  bool Start(Work work);
  Result StopPrefetch(const std::function<void()>& pump = {});
  void JoinAll();
  void Show(const FrameRequest& request);
  void ShowNeighbour(int direction);
  [[nodiscard]] FramePointer FindRemembered(const FrameRequest& request);
  void SetCurrent(FramePointer frame);
  void TakeProperties(const std::optional<VideoProperties>& properties);
  void RunPlayback(const PlayOptions& options);
  void Notify(VideoNotification notification);

  FileSystem& files_;
  Reporter& reporter_;
  AudioOutput* audio_;
  PlaybackClock* clock_;
  VideoOutlet outlet_;
  bool visible_ = true;
  bool refusedMpeg1_ = false;
  bool refusedSound_ = false;
  DiscReader reader_;  // the running thread's, else the owner's
  std::thread worker_;
  std::thread prefetcher_;
  std::atomic<bool> running_ = false;
  std::atomic<bool> stop_ = false;
  std::atomic<int> audioStream_ = kNoAudio;
  std::atomic<bool> soundRefused_ = false;
  std::atomic<bool> prefetching_ = false;
  std::atomic<bool> stopPrefetch_ = false;

  mutable std::mutex mutex_;  // guards the rest
  FrameMemory memory_{kMemoryBudget};
  FramePointer current_;
  std::optional<VideoProperties> properties_;
};

}  // namespace quillomar
