#include "video/frame_memory.h"

#include <algorithm>

namespace quillomar {

FramePointer FrameMemory::Find(const FrameRequest& request) {
  const auto found = std::find_if(frames_.begin(), frames_.end(),
                                  [&](const auto& entry) { return entry.first == request; });
  if (found == frames_.end()) return nullptr;
  frames_.splice(frames_.begin(), frames_, found);
  return frames_.front().second;
}

void FrameMemory::Keep(const FrameRequest& request, FramePointer frame) {
  if (frame->rgb.size() > budget_ || Find(request)) return;
  size_ += frame->rgb.size();
  frames_.emplace_front(request, std::move(frame));
  while (size_ > budget_) {
    size_ -= frames_.back().second->rgb.size();
    frames_.pop_back();
  }
}

void FrameMemory::Clear() {
  frames_.clear();
  size_ = 0;
}

}  // namespace quillomar
