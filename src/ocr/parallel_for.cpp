#include "ocr/parallel_for.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace quillomar {

std::size_t WorkerCount() {
  return std::max(std::thread::hardware_concurrency(), 1U);
}

void ParallelFor(std::size_t count,
                 const std::function<void(std::size_t worker, std::size_t index)>& work) {
  std::atomic<std::size_t> next = 0;
  const auto run = [&](std::size_t worker) {
    for (std::size_t index = next++; index < count; index = next++) work(worker, index);
  };
  std::vector<std::thread> threads;
  for (std::size_t worker = 1; worker < std::min(WorkerCount(), count); ++worker) {
    threads.emplace_back(run, worker);
  }
  run(0);
  for (std::thread& thread : threads) thread.join();
}

}  // namespace quillomar
