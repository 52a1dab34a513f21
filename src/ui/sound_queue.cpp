#include "ui/sound_queue.h"

#include <algorithm>
#include <cstring>

#include "video/audio_output.h"

namespace quillomar {
namespace {

// A sound server that slept may begin two seconds late.
constexpr std::chrono::milliseconds kLongestSilence{3000};
constexpr int kQueuesPerSecond = 4;  // that is how much is held

}  // namespace

void SoundQueue::Restart(int sampleRate) {
  const std::scoped_lock lock(mutex_);
  waiting_.clear();
  sampleRate_ = sampleRate;
  dead_ = false;
  read_ = 0;
  played_ = 0;
  noted_ = lastRead_ = Clock::now();
}

std::size_t SoundQueue::Add(std::span<const std::int16_t> samples) {
  const std::scoped_lock lock(mutex_);
  const std::size_t offered = samples.size() / AudioOutput::kChannels;
  if (dead_) return offered;
  if (waiting_.empty()) lastRead_ = Clock::now();
  const std::size_t capacity = static_cast<std::size_t>(sampleRate_) / kQueuesPerSecond;
  const std::size_t held = waiting_.size() / AudioOutput::kChannels;
  const std::size_t taken = std::min(offered, capacity - std::min(capacity, held));
  const auto end = static_cast<std::ptrdiff_t>(taken * AudioOutput::kChannels);
  waiting_.insert(waiting_.end(), samples.begin(), samples.begin() + end);
  return taken;
}

// Between two looks at the device its clock is taken to run as ours.
std::size_t SoundQueue::Unheard() {
  const std::scoped_lock lock(mutex_);
  const auto now = Clock::now();
  if (HasDied(now)) dead_ = true;
  if (dead_) return 0;
  const std::chrono::duration<double> since = now - noted_;
  const auto more = static_cast<std::size_t>(since.count() * sampleRate_);
  const std::size_t unplayed = read_ - std::min(read_, played_ + more);
  return waiting_.size() / AudioOutput::kChannels + unplayed;
}

bool SoundQueue::HasDied(Clock::time_point now) const {
  return !waiting_.empty() && now - lastRead_ > kLongestSilence;
}

void SoundQueue::NoteHeld(std::size_t pairs) {
  const std::scoped_lock lock(mutex_);
  noted_ = Clock::now();
  played_ = read_ - std::min(read_, pairs);
}

void SoundQueue::GiveUp() {
  const std::scoped_lock lock(mutex_);
  waiting_.clear();
  dead_ = true;
}

std::size_t SoundQueue::Take(std::span<char> data) {
  const std::scoped_lock lock(mutex_);
  const std::size_t held = waiting_.size() / AudioOutput::kChannels;
  const std::size_t pairs = std::min(data.size() / kPairSize, held);
  const auto end = waiting_.begin() + static_cast<std::ptrdiff_t>(pairs * AudioOutput::kChannels);
  char* out = data.data();
  for (auto sample = waiting_.begin(); sample != end; ++sample, out += sizeof *sample) {
    std::memcpy(out, &*sample, sizeof *sample);
  }
  waiting_.erase(waiting_.begin(), end);
  read_ += pairs;
  if (pairs > 0) lastRead_ = Clock::now();
  return pairs * kPairSize;
}

}  // namespace quillomar
