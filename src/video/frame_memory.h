#pragma once

#include <cstddef>
#include <list>
#include <utility>

#include "video/video_frame.h"

namespace quillomar {

// The last pictures that were found, within a fixed number of bytes.
class FrameMemory {
 public:
  explicit FrameMemory(std::size_t budget) : budget_(budget) {}

  // Null for a request whose picture is not here.
  [[nodiscard]] FramePointer Find(const FrameRequest& request);
  void Keep(const FrameRequest& request, FramePointer frame);
  void Clear();
  // Bytes that the pictures take.
  [[nodiscard]] std::size_t Size() const { return size_; }

 private:
  std::size_t budget_;
  std::size_t size_ = 0;
  std::list<std::pair<FrameRequest, FramePointer>> frames_;  // the last one used first
};

}  // namespace quillomar
