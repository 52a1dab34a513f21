#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <optional>

#include "video/audio_decoder.h"
#include "video/disc_reader.h"
#include "video/playback_options.h"
#include "video/video_decoder.h"
#include "video/vobu_walk.h"

namespace quillomar {

// Reads packs in the order of the disc and decodes what they carry. Times that come out count from
// the start of the set and run on where a VOB begins its clock anew.
class PlaySource {
 public:
  PlaySource(DiscReader& reader, const std::atomic<int>& audioStream, LogSink log)
      : reader_(reader), walk_(reader), audioStream_(audioStream), log_(std::move(log)) {}

  // Begins in the VOBU that holds the request's picture or in the one before. Fails outside the
  // set.
  Result Begin(const FrameRequest& from);
  // Takes one more pack in. False at the end of the set; the last pictures are there then.
  bool Read();
  [[nodiscard]] std::optional<DecodedPicture> TakePicture() { return video_->Take(); }
  [[nodiscard]] std::optional<AudioBlock> TakeSound();
  // Without combing where it is to be looked at as a `still`.
  [[nodiscard]] VideoFrame Convert(const DecodedPicture& picture, bool still);
  // The stream chosen is of a kind that cannot be played.
  [[nodiscard]] bool SoundRefused() const { return audio_ && audio_->Refused(); }
  [[nodiscard]] const std::optional<VideoProperties>& Properties() const {
    return video_->Properties();
  }

 private:
  // From where on a VOBU's clock holds.
  struct Mark {
    std::int64_t time = 0;    // in the set
    std::int64_t offset = 0;  // from the clock to the time in the set
    std::uint32_t lba = 0;
  };
  void EnterVobu(const VobuMark& vobu);
  void TakeAudioPack(SectorView sector, int stream);
  [[nodiscard]] std::optional<std::int64_t> SetTime(SectorView pack) const;

  DiscReader& reader_;
  VobuWalk walk_;
  const std::atomic<int>& audioStream_;
  LogSink log_;
  std::optional<SectorCursor> cursor_;
  std::optional<VobuMark> vobu_;
  std::int64_t offset_ = 0;
  std::deque<Mark> marks_;
  std::unique_ptr<VideoDecoder> video_;
  std::unique_ptr<AudioDecoder> audio_;
  int decodedStream_ = kNoAudio;
};

}  // namespace quillomar
