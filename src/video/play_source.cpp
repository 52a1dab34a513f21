#include "video/play_source.h"

#include "dvd/pack.h"
#include "video/video_packet.h"

namespace quillomar {

Result PlaySource::Begin(const FrameRequest& from) {
  auto vobu = walk_.At(from.lba);
  if (!vobu) return Result::kFailed;
  const std::uint32_t time = from.pts.value_or(vobu->startTime);
  while (TicksBetween(vobu->startTime, time) < 0) {
    const auto previous = walk_.PreviousInVob(*vobu);
    if (!previous) break;
    vobu = previous;
  }
  // One further back, for the first pictures of a VOBU may refer to that.
  if (const auto previous = walk_.PreviousInVob(*vobu)) vobu = previous;
  offset_ = from.timeOffset;
  marks_.clear();
  vobu_.reset();
  audio_.reset();
  decodedStream_ = kNoAudio;
  video_ = std::make_unique<VideoDecoder>(vobu->startTime + offset_, log_);
  cursor_.emplace(reader_, vobu->lba);
  return Result::kDone;
}

// Where a new VOB's clock goes back, time in the set runs on from the end of the one before.
void PlaySource::EnterVobu(const VobuMark& vobu) {
  if (vobu_ && TicksBetween(vobu.startTime, vobu_->endTime) > 0) {
    offset_ += TicksBetween(vobu.startTime, vobu_->endTime);
  }
  vobu_ = vobu;
  marks_.push_back({std::int64_t{vobu.startTime} + offset_, offset_, vobu.lba});
}

bool PlaySource::Read() {
  const std::uint8_t* const bytes = cursor_->Next();
  if (bytes == nullptr) {
    video_->Finish();
    return false;
  }
  const SectorView sector(bytes, kSectorSize);
  const std::uint32_t lba = cursor_->Lba() - 1;
  if (ClassifyPack(sector).kind == PackKind::kNav) {
    const auto vobu = walk_.At(lba);
    // Of interleaved VOBs the one that was begun is followed.
    const bool astray = vobu && vobu_ && vobu_->next && vobu->vcid.vobId != vobu_->vcid.vobId &&
                        vobu->lba < vobu_->lba + *vobu_->next;
    if (astray) {
      cursor_.emplace(reader_, vobu_->lba + *vobu_->next);
    } else if (vobu) {
      EnterVobu(*vobu);
    }
    return true;
  }
  const ByteSpan video = VideoBytes(sector);
  if (!video.empty()) video_->Feed(video, SetTime(sector));
  if (const auto stream = AudioStreamOf(sector)) TakeAudioPack(sector, *stream);
  return true;
}

void PlaySource::TakeAudioPack(SectorView sector, int stream) {
  const int chosen = audioStream_;
  if (chosen != decodedStream_) {
    audio_ = MakeAudioDecoder(chosen, log_);
    decodedStream_ = chosen;
  }
  if (audio_ && stream == chosen) audio_->Feed(PesPayload(sector), SetTime(sector));
}

std::optional<std::int64_t> PlaySource::SetTime(SectorView pack) const {
  const auto stamp = PacketTime(pack);
  if (!stamp || !vobu_) return std::nullopt;
  return std::int64_t{vobu_->startTime} + TicksBetween(vobu_->startTime, *stamp) + offset_;
}

std::optional<AudioBlock> PlaySource::TakeSound() {
  return audio_ ? audio_->Take() : std::nullopt;
}

VideoFrame PlaySource::Convert(const DecodedPicture& picture, bool still) {
  while (marks_.size() > 1 && marks_[1].time <= picture.time) marks_.pop_front();
  VideoFrame frame = video_->Convert(picture, still);
  frame.globalTime = picture.time;
  if (!marks_.empty()) {
    frame.pts = static_cast<std::uint32_t>(picture.time - marks_.front().offset);
    frame.navLba = marks_.front().lba;
  }
  return frame;
}

}  // namespace quillomar
