#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "base/file.h"

// What each target defines. A target takes any input whatever and returns 0; it ends the process
// when the code under it breaks a promise.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace quillomar::fuzz {

// Valid inputs to start from, small (a few KiB each).
std::vector<Bytes> Seeds();

// An input whose first byte chooses how the rest is taken.
inline Bytes WithFirst(std::uint8_t choice, ByteSpan rest) {
  Bytes input(1 + rest.size(), choice);
  std::copy(rest.begin(), rest.end(), input.begin() + 1);
  return input;
}

// A promise of the code under test, checked in release builds too.
inline void Require(bool kept) {
  if (!kept) std::abort();
}

}  // namespace quillomar::fuzz
