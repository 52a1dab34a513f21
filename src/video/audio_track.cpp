#include "video/audio_track.h"

#include <algorithm>

namespace quillomar {
namespace {

constexpr std::int64_t kClock = 90000;
constexpr std::int64_t kLongestSilence = 10 * kClock;
// Time stamps are rounded; less than this is no gap.
constexpr std::int64_t kTolerance = kClock / 200;

}  // namespace

void AudioTrack::Reset() {
  if (open_) output_->Close();
  open_ = false;
  failed_ = false;
  pending_.clear();
  written_ = 0;
}

void AudioTrack::StartAt(std::int64_t time) {
  pending_.clear();
  endTime_ = time;
}

std::int64_t AudioTrack::TicksOf(std::size_t pairs) const {
  return sampleRate_ > 0 ? static_cast<std::int64_t>(pairs) * kClock / sampleRate_ : 0;
}

std::size_t AudioTrack::PairsOf(std::int64_t ticks) const {
  return static_cast<std::size_t>(ticks * sampleRate_ / kClock);
}

bool AudioTrack::OpenFor(int sampleRate) {
  if (open_ && sampleRate == sampleRate_) return true;
  if (failed_ || output_ == nullptr || sampleRate <= 0) return false;
  if (open_) Reset();
  sampleRate_ = sampleRate;
  open_ = output_->Open(sampleRate);
  failed_ = !open_;
  return open_;
}

void AudioTrack::DropPending() {
  endTime_ -= TicksOf(pending_.size() / AudioOutput::kChannels);
  pending_.clear();
}

void AudioTrack::Add(AudioBlock block, std::int64_t now) {
  if (!OpenFor(block.sampleRate)) return;
  if (written_ > 0 && QueuedMs() == 0) endTime_ = std::max(endTime_, now);
  const std::int64_t gap = block.time - endTime_;
  if (gap > kTolerance && gap <= kLongestSilence) {
    pending_.resize(pending_.size() + PairsOf(gap) * AudioOutput::kChannels);
  }
  if (gap < -kTolerance) {
    const std::size_t cut = std::min(PairsOf(-gap) * AudioOutput::kChannels, block.samples.size());
    block.samples.erase(block.samples.begin(),
                        block.samples.begin() + static_cast<std::ptrdiff_t>(cut));
  } else {
    endTime_ = block.time;
  }
  pending_.insert(pending_.end(), block.samples.begin(), block.samples.end());
  endTime_ += TicksOf(block.samples.size() / AudioOutput::kChannels);
}

void AudioTrack::Pump() {
  if (!open_ || pending_.empty()) return;
  const std::size_t pairs = output_->Write(pending_);
  written_ += pairs;
  pending_.erase(pending_.begin(),
                 pending_.begin() + static_cast<std::ptrdiff_t>(pairs * AudioOutput::kChannels));
}

std::optional<std::int64_t> AudioTrack::HeardTime() {
  if (!open_) return std::nullopt;
  const std::size_t queued = output_->Queued();
  if (queued == 0) return std::nullopt;
  return endTime_ - TicksOf(queued + pending_.size() / AudioOutput::kChannels);
}

int AudioTrack::QueuedMs() {
  if (!open_) return 0;
  const std::size_t pairs = output_->Queued() + pending_.size() / AudioOutput::kChannels;
  return static_cast<int>(TicksOf(pairs) * 1000 / kClock);
}

int AudioTrack::ReadPosition() {
  return open_ ? static_cast<int>(written_ - std::min(written_, output_->Queued())) : 0;
}

}  // namespace quillomar
