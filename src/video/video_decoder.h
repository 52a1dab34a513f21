#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "base/file.h"
#include "video/decoder_log.h"
#include "video/video_frame.h"

namespace quillomar {

// A picture as decoded, in the order of display.
struct DecodedPicture {
  std::int64_t time = 0;      // on the clock that the decoder was fed with, 90 kHz
  std::int64_t duration = 0;  // ticks
  bool intra = false;
  bool interlaced = false;        // holds two moments
  std::shared_ptr<void> picture;  // the decoder's own
};

// MPEG-2 video decoder. Takes an elementary stream in pieces of any size; damage costs pictures,
// never more.
class VideoDecoder {
 public:
  // `startTime` is the time of the first picture of a stream that has no time stamps at all.
  explicit VideoDecoder(std::int64_t startTime, LogSink log = {});
  ~VideoDecoder();
  VideoDecoder(const VideoDecoder&) = delete;
  VideoDecoder& operator=(const VideoDecoder&) = delete;

  // Decodes I-pictures alone from now on.
  void OnlyIntra();
  // The next bytes of the stream, with the time stamp of the first picture that begins in them.
  void Feed(ByteSpan bytes, std::optional<std::int64_t> time);
  // No bytes follow: the pictures held back for reordering come out.
  void Finish();
  // The next picture that has been decoded.
  [[nodiscard]] std::optional<DecodedPicture> Take();
  // Nothing before the first picture.
  [[nodiscard]] const std::optional<VideoProperties>& Properties() const;
  // Scales to the frame and converts to RGB; pictures of two moments lose their combing when
  // `still` is set. The times are left to the caller.
  [[nodiscard]] VideoFrame Convert(const DecodedPicture& decoded, bool still);

 private:
  struct Parts;
  void Decode(ByteSpan accessUnit, std::int64_t time);
  void Receive();
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillomar
