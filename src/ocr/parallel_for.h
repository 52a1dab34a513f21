#pragma once

#include <cstddef>
#include <functional>

namespace quillomar {

// Threads that ParallelFor uses: as many as there are processors.
[[nodiscard]] std::size_t WorkerCount();

// Calls work(worker, index) for every index below `count`, workers numbered from 0 below
// WorkerCount(), and returns when all calls have returned.
void ParallelFor(std::size_t count,
                 const std::function<void(std::size_t worker, std::size_t index)>& work);

}  // namespace quillomar
