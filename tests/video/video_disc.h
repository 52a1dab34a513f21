#pragma once

#include <cstdint>
#include <map>
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
};

// The number burnt into a picture; -1 where its boxes are neither black nor white.
[[nodiscard]] int ReadCounter(const VideoFrame& frame);

// What the disc's author says of a VOB of title set 1.
struct VobTruth {
  int frames = 0;
  int firstCounter = 0;
};
// By VOB id, in the order of the disc.
[[nodiscard]] std::map<int, VobTruth> ReadTruth(const std::string& disc);

}  // namespace quillomar::test
