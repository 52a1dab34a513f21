#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "video/disc_reader.h"
#include "video/video_decoder.h"
#include "video/video_frame.h"
#include "video/vobu_walk.h"

namespace quillomar {

// Finds and decodes single pictures. `stop` ends a search early, which then finds nothing.
class FrameFinder {
 public:
  FrameFinder(DiscReader& reader, const std::atomic<bool>& stop)
      : reader_(reader), walk_(reader), stop_(stop) {}

  // Null where there is no picture that can be decoded, or the video is MPEG-1.
  [[nodiscard]] FramePointer Find(const FrameRequest& request);
  // The picture after (1) or before (-1) one that was found; null at either end of the set.
  [[nodiscard]] FramePointer Step(const VideoFrame& from, int direction);
  // What the last picture decoded told.
  [[nodiscard]] const std::optional<VideoProperties>& Properties() const { return properties_; }

 private:
  struct Search;
  [[nodiscard]] std::optional<VobuMark> SettleOn(const FrameRequest& request);
  [[nodiscard]] FramePointer FindFrom(VobuMark vobu, Search& search);
  void DecodeFrom(const VobuMark& first, std::uint32_t lastLba, Search& search);
  void DecodeVobu(const VobuMark& vobu, Search& search);
  [[nodiscard]] FramePointer FirstAfter(const VideoFrame& from);
  [[nodiscard]] FramePointer LastBefore(const VideoFrame& from);

  DiscReader& reader_;
  VobuWalk walk_;
  const std::atomic<bool>& stop_;
  std::optional<VideoProperties> properties_;
};

}  // namespace quillomar
