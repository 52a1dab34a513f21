#include "support/message_collector.h"

#include <algorithm>
#include <sstream>

namespace quillomar::test {

MessageCollector::MessageCollector() : reporter(files) {
  const auto ask = [this](const std::string& question) {
    questions.push_back(question);
    return answer;
  };
  const auto showError = [this](const std::string& text) {
    errors.push_back(text);
    return 1;
  };
  reporter.InstallHooks({showError, ask, ask});
  reporter.OpenLog(kLogPath);
}

std::vector<std::string> MessageCollector::LogLines() {
  const Bytes& log = files.Content(kLogPath);
  std::istringstream text(std::string(log.begin(), log.end()));
  std::vector<std::string> lines;
  const std::string separator = " -- ";
  for (std::string line; std::getline(text, line);) {
    const auto cut = line.find(separator);
    lines.push_back(cut == std::string::npos ? line : line.substr(cut + separator.size()));
  }
  return lines;
}

bool MessageCollector::Logged(const std::string& text) {
  const auto lines = LogLines();
  return std::find(lines.begin(), lines.end(), text) != lines.end();
}

}  // namespace quillomar::test
