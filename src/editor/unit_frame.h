#pragma once

#include <string>

#include "editor/picture.h"
#include "video/video_frame.h"

namespace quillomar {

// Asks for the picture on the screen when the unit appears.
[[nodiscard]] FrameRequest FrameRequestFor(const SubpictureUnit& unit);

// Asks for the I-frame nearest to the unit's end, or to the start of `next`, the one after it in
// its stream, where it has no end of its own.
[[nodiscard]] FrameRequest EndFrameRequestFor(const SubpictureUnit& unit,
                                              const SubpictureUnit* next);

// Ticks after the unit's start at which its last sequence begins; nothing where it has no end.
[[nodiscard]] std::optional<std::int64_t> EndTicks(const SubpictureUnit& unit);

// Lays a subpicture over a frame; what reaches beyond it is left out.
void LayOver(VideoFrame& frame, const SubpicturePicture& picture);

// Writes a frame as a 24-bit bitmap file. Fails when the file cannot be written.
Result SaveFrame(FileSystem& files, const std::string& path, const VideoFrame& frame);

}  // namespace quillomar
