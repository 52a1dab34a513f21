#pragma once

#include <string>

#if defined(__GNUC__)
#define QUILLOMAR_PRINTF(formatIndex, firstArgument) \
  __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define QUILLOMAR_PRINTF(formatIndex, firstArgument)
#endif

namespace quillomar {

// printf-style formatting into a string of any length.
std::string Format(const char* format, ...) QUILLOMAR_PRINTF(1, 2);

}  // namespace quillomar
