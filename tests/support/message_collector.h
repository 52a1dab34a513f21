#pragma once

#include <string>
#include <vector>

#include "base/reporting.h"
#include "support/memory_files.h"

namespace quillomar::test {

// A reporter whose messages and questions can be looked at, and whose answers can be chosen.
class MessageCollector {
 public:
  MessageCollector();

  // All log lines so far, each without its time.
  [[nodiscard]] std::vector<std::string> LogLines();
  [[nodiscard]] bool Logged(const std::string& text);

  static constexpr const char* kLogPath = "/collector.log";

  MemoryFileSystem files;
  std::vector<std::string> errors;
  std::vector<std::string> questions;
  bool answer = false;
  Reporter reporter;
};

}  // namespace quillomar::test
