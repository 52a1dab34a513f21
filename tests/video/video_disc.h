#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/platform.h"
#include "dvd/vob_file_set.h"
#include "support/disc_copy.h"
#include "support/message_collector.h"
#include "video/video_engine.h"

namespace quillomar::test {

// A subpicture as its first pack tells it, with the clock of the VOB around it.
struct UnitPlace {
  std::uint32_t lba = 0;     // LBA in set
  std::uint32_t navLba = 0;  // LBA in set
  std::uint32_t pts = 0;     // 90 kHz
  int vobId = 0;
  std::uint32_t vobStart = 0;  // 90 kHz, start of the VOB's first VOBU
  [[nodiscard]] FrameRequest Request() const { return {lba, pts}; }
};

// An engine on files of a disc, with what it said.
class VideoDisc {
 public:
  explicit VideoDisc(const std::vector<std::string>& paths, AudioOutput* audio = nullptr,
                     PlaybackClock* clock = nullptr);

  // Asks for a picture and waits for it, as the window does.
  FramePointer Show(const FrameRequest& request);
  FramePointer Step(int direction);
  [[nodiscard]] std::vector<UnitPlace> Units();

  // Plays to the end; the frames shown. `onShown` is called on the decoding thread.
  std::vector<FramePointer> Play(const PlayOptions& options,
                                 const std::function<void(const VideoFrame&)>& onShown = {});

  MessageCollector messages;
  std::vector<VideoNotification> notifications;  // read only while nothing runs
  std::unique_ptr<FileSystem> files = MakeDiskFileSystem();
  VobFileSet set{*files, messages.reporter};
  VideoEngine engine;

 private:
  FramePointer WaitForFrame();
};

// A test on its own copy of an authored disc.
class DiscTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no discs";
    copy_.emplace(Name());
  }
  [[nodiscard]] virtual std::string Name() const { return "ntsc"; }

  std::optional<DiscCopy> copy_;
};

// The number burnt into a picture; -1 where its boxes are neither black nor white.
[[nodiscard]] int ReadCounter(const VideoFrame& frame);

}  // namespace quillomar::test
