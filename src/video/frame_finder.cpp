#include "video/frame_finder.h"

#include <cstdlib>

#include "dvd/pack.h"
#include "video/video_packet.h"

namespace quillomar {
namespace {

// A still may have been shown for minutes before the time asked for.
constexpr int kMostVobusBack = 600;

}  // namespace

// One search. Times are ticks after the one that is looked for.
struct FrameFinder::Search {
  FrameRequest request;
  std::uint32_t target = 0;
  std::unique_ptr<VideoDecoder> decoder;
  std::optional<DecodedPicture> first = {};
  std::optional<DecodedPicture> best = {};
  bool done = false;

  void Begin(const VobuMark& vobu);
  void Collect();
  void Take(DecodedPicture picture);
};

void FrameFinder::Search::Begin(const VobuMark& vobu) {
  decoder = std::make_unique<VideoDecoder>(TicksBetween(target, vobu.startTime));
  if (request.choice == FrameChoice::kNearestIntra) decoder->OnlyIntra();
  first.reset();
  best.reset();
  done = false;
}

void FrameFinder::Search::Take(DecodedPicture picture) {
  if (!first) first = picture;
  if (request.choice == FrameChoice::kNearestIntra) {
    if (picture.intra && (!best || std::abs(picture.time) < std::abs(best->time))) {
      best = std::move(picture);
    }
    return;
  }
  done = picture.time + picture.duration > 0;
  if (picture.time <= 0) best = std::move(picture);
}

void FrameFinder::Search::Collect() {
  while (!done) {
    auto picture = decoder->Take();
    if (!picture) return;
    Take(std::move(*picture));
  }
}

void FrameFinder::DecodeVobu(const VobuMark& vobu, Search& search) {
  SectorCursor cursor(reader_, vobu.lba + 1);
  while (!search.done && !stop_) {
    const std::uint8_t* const bytes = cursor.Next();
    if (bytes == nullptr) return;
    const SectorView sector(bytes, kSectorSize);
    if (ClassifyPack(sector).kind == PackKind::kNav) return;
    const ByteSpan video = VideoBytes(sector);
    if (video.empty()) continue;
    std::optional<std::int64_t> time;
    if (const auto stamp = PacketTime(sector)) time = TicksBetween(search.target, *stamp);
    search.decoder->Feed(video, time);
    search.Collect();
  }
}

// Goes one VOBU beyond the last, whose last picture may end there.
void FrameFinder::DecodeFrom(const VobuMark& first, std::uint32_t lastLba, Search& search) {
  search.Begin(first);
  for (std::optional<VobuMark> vobu = first; vobu && !search.done && !stop_;) {
    DecodeVobu(*vobu, search);
    vobu = vobu->lba <= lastLba ? walk_.NextInVob(*vobu) : std::nullopt;
  }
  if (search.done) return;
  search.decoder->Finish();
  search.Collect();
}

// Subpictures are multiplexed before or after the video of their time, so the time decides.
std::optional<VobuMark> FrameFinder::SettleOn(const FrameRequest& request) {
  auto vobu = walk_.At(request.lba);
  if (!vobu || !request.pts) return vobu;
  while (!stop_ && TicksBetween(vobu->startTime, *request.pts) < 0) {
    const auto previous = walk_.PreviousInVob(*vobu);
    if (!previous) break;
    vobu = previous;
  }
  while (!stop_ && TicksBetween(vobu->endTime, *request.pts) >= 0) {
    const auto next = walk_.NextInVob(*vobu);
    if (!next || TicksBetween(next->startTime, *request.pts) < 0) break;
    vobu = next;
  }
  return vobu;
}

FramePointer FrameFinder::Find(const FrameRequest& request) {
  const auto vobu = SettleOn(request);
  if (!vobu) return nullptr;
  Search search{request, request.pts.value_or(vobu->startTime), nullptr};
  return FindFrom(*vobu, search);
}

FramePointer FrameFinder::FindFrom(VobuMark vobu, Search& search) {
  const std::uint32_t navLba = vobu.lba;
  std::uint32_t lastLba = navLba;  // nav pack of the last VOBU that needs decoding
  for (int i = 0; i < kMostVobusBack && !stop_; ++i) {
    DecodeFrom(vobu, lastLba, search);
    const auto previous = search.best ? std::nullopt : walk_.PreviousInVob(vobu);
    // The first pictures may need one of the VOBU before, but no more than that.
    if (!previous || (search.first && vobu.lba != lastLba)) break;
    if (!search.first) lastLba = previous->lba;
    vobu = *previous;
  }
  if (search.decoder && search.decoder->Properties()) properties_ = search.decoder->Properties();
  const auto& chosen = search.best ? search.best : search.first;
  if (!chosen || stop_ || properties_->mpeg1) return nullptr;
  VideoFrame frame = search.decoder->Convert(*chosen, true);
  frame.pts = search.target + static_cast<std::uint32_t>(chosen->time);
  frame.globalTime = std::int64_t{search.target} + chosen->time + search.request.timeOffset;
  frame.navLba = navLba;
  return std::make_shared<const VideoFrame>(std::move(frame));
}

FramePointer FrameFinder::Step(const VideoFrame& from, int direction) {
  const std::int64_t offset = from.globalTime - std::int64_t{from.pts};
  const auto wanted =
      direction > 0 ? from.pts + static_cast<std::uint32_t>(from.duration) : from.pts - 1;
  FramePointer found = Find({from.navLba, wanted, offset});
  const std::int32_t moved = found ? TicksBetween(from.pts, found->pts) : 0;
  if (moved * direction > 0) return found;
  return direction > 0 ? FirstAfter(from) : LastBefore(from);
}

FramePointer FrameFinder::FirstAfter(const VideoFrame& from) {
  auto last = walk_.At(from.navLba);
  for (auto next = last; next && !stop_; next = walk_.NextInVob(*last)) last = next;
  const auto other = last ? walk_.After(last->lba) : std::nullopt;
  if (!other) return nullptr;
  const std::int64_t offset = from.globalTime - std::int64_t{from.pts};
  return Find({other->lba, std::nullopt, offset + TicksBetween(other->startTime, last->endTime)});
}

FramePointer FrameFinder::LastBefore(const VideoFrame& from) {
  auto first = walk_.At(from.navLba);
  for (auto back = first; back && !stop_; back = walk_.PreviousInVob(*first)) first = back;
  const auto other = first ? walk_.Before(first->lba) : std::nullopt;
  if (!other) return nullptr;
  const std::int64_t offset = from.globalTime - std::int64_t{from.pts};
  return Find(
      {other->lba, other->endTime - 1, offset + TicksBetween(other->endTime, first->startTime)});
}

}  // namespace quillomar
