#pragma once

namespace quillomar {

// The outcome of an operation that can fail; the reason has been reported where it arose.
enum class [[nodiscard]] Result{kFailed = -1, kDone = 0};

inline bool Failed(Result result) {
  return result == Result::kFailed;
}

}  // namespace quillomar
