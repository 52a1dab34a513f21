#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/file.h"

namespace quillomar::test {

// Decodes a program stream from its start with FFmpeg's own demuxer. For each time, in 90 kHz and
// ascending, the picture shown then, as RGB; an empty one for a time beyond the first VOB.
[[nodiscard]] std::vector<Bytes> DecodeLinearly(const std::string& path,
                                                std::vector<std::uint32_t> times);

}  // namespace quillomar::test
