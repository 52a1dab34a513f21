#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quillomar {

// Takes the combs out of a plane that holds two moments in alternate rows: where a sample of an odd
// row sticks out from both its neighbours, it becomes their mean. What did not move keeps its full
// sharpness. `stride` is the distance of rows in bytes.
void RemoveCombing(std::span<std::uint8_t> plane, std::size_t stride, int width, int height);

}  // namespace quillomar
