#pragma once

#include <string>

#include "editor/picture.h"
#include "video/video_frame.h"

namespace quillomar {

// Asks for the picture on the screen when the unit appears.
[[nodiscard]] FrameRequest FrameRequestFor(const SubpictureUnit& unit);

// Lays a subpicture over a frame; what reaches beyond it is left out.
void LayOver(VideoFrame& frame, const SubpicturePicture& picture);

// Writes a frame as a 24-bit bitmap file. Fails when the file cannot be written.
Result SaveFrame(FileSystem& files, const std::string& path, const VideoFrame& frame);

}  // namespace quillomar
