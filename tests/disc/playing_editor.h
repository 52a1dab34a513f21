#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "base/platform.h"
#include "cli/cli_front_end.h"
#include "editor/editor.h"
#include "video/fake_playback.h"

namespace quillomar::test {

// An editor that shows video, with a recorder for the sound and a clock that only playback moves.
class PlayingEditor final : private VideoHost {
 public:
  explicit PlayingEditor(const std::vector<std::string>& paths) {
    editor_.Context().reporter.InstallHooks({[this](const std::string& text) {
                                               errors.push_back(text);
                                               return 1;
                                             },
                                             [](const std::string&) { return true; },
                                             [](const std::string&) { return true; }});
    editor_.OpenFiles(paths, false);
  }
  ~PlayingEditor() override { editor_.CloseFiles(); }

  Editor* operator->() { return &editor_; }
  // Handles what the video has posted for as long as the condition holds, 60 s at most. `look` is
  // called whenever the view has changed.
  void RunWhile(const std::function<bool()>& condition, std::function<void()> look) {
    look_ = std::move(look);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (condition() && std::chrono::steady_clock::now() < deadline) Pump();
    look_ = nullptr;
    EXPECT_LT(std::chrono::steady_clock::now(), deadline) << "waited for a minute, in vain";
  }
  // Until the picture asked for last has come.
  void WaitForFrame() {
    RunWhile([this] { return !editor_.CurrentView().video.settled; }, [] {});
  }

  // Both channels of what was heard.
  std::size_t SamplesHeard() const { return sound_.recorded.size(); }

  std::vector<std::string> errors;

 private:
  // Time goes on when what was posted has been handled, so that no frame is passed over however
  // slow the machine is; a tenth of a second at most, for one who has posted may be waited for.
  class PatientClock final : public FakeClock {
   public:
    explicit PatientClock(PlayingEditor& editor) : editor_(editor) {}
    void Sleep(std::int64_t microseconds) override {
      FakeClock::Sleep(microseconds);
      for (int i = 0; i < 100 && editor_.Busy(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    }

   private:
    PlayingEditor& editor_;
  };
  class Front final : public CliFrontEnd {
   public:
    explicit Front(VideoHost& host) : host_(host) {}
    VideoHost* Video() override { return &host_; }

   private:
    VideoHost& host_;
  };

  bool Busy() {
    const std::scoped_lock lock(mutex_);
    return !posted_.empty();
  }
  void Post(std::function<void()> action) override {
    const std::scoped_lock lock(mutex_);
    posted_.push_back(std::move(action));
  }
  void Pump() override {
    std::function<void()> action;
    {
      const std::scoped_lock lock(mutex_);
      if (!posted_.empty()) {
        action = std::move(posted_.front());
        posted_.pop_front();
      }
    }
    if (action) {
      action();
    } else {
      std::this_thread::yield();
    }
  }
  void VideoChanged() override {
    if (look_) look_();
  }
  AudioOutput* Sound() override { return &sound_; }
  PlaybackClock* Clock() override { return &clock_; }

  PatientClock clock_{*this};
  RecordingOutput sound_{clock_};
  std::mutex mutex_;
  std::deque<std::function<void()>> posted_;
  std::function<void()> look_;
  std::unique_ptr<FileSystem> files_ = MakeDiskFileSystem();
  Session session_{*files_, testing::TempDir() + "/state"};
  Front frontEnd_{*this};
  InlineJobRunner runner_;
  Editor editor_{session_, frontEnd_, runner_};
};

}  // namespace quillomar::test
