#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "base/file.h"

namespace quillomar {

// What a front end installs to talk to the user. Each may be called from a worker thread, never
// with a lock of the reporter held; an empty one shows nothing and answers no.
struct ReportingHooks {
  std::function<int(const std::string& text)> showError;         // returns the message box's result
  std::function<bool(const std::string& question)> askYesNo;     // true for Yes
  std::function<bool(const std::string& question)> askOkCancel;  // true for OK
  // As askYesNo, which is asked where this is empty, but Yes is what Return answers.
  std::function<bool(const std::string& question)> askRecommended = {};
};

// The one way by which the program tells the user something. Safe to call from any thread.
class Reporter {
 public:
  explicit Reporter(FileSystem& files) : files_(files) {}

  void InstallHooks(ReportingHooks hooks) { hooks_ = std::move(hooks); }

  // Shows an error; with a non-zero quiet flag returns that flag and shows nothing.
  int ReportError(const std::string& text, int quiet = 0);
  // Shows that a file could only be opened for reading.
  void ReportReadOnly(const std::string& path);
  // Adds "time -- text" to the log while one is open and sets the status text; one trailing line
  // break of the text is dropped. A non-zero quiet flag makes it do nothing.
  void LogLine(std::string_view text, int quiet = 0);
  // Answers no where nobody can be asked.
  bool AskYesNo(const std::string& question);
  bool AskOkCancel(const std::string& question);
  // A question whose Yes is recommended.
  bool AskRecommended(const std::string& question);

  // The text of the last log line, for the progress display.
  [[nodiscard]] std::string StatusText() const;
  void ClearStatusText();

  // Truncates and opens the log; an empty path or a file that cannot be made leaves logging off.
  void OpenLog(const std::string& path);
  void CloseLog();

 private:
  FileSystem& files_;
  ReportingHooks hooks_;
  mutable std::mutex mutex_;
  std::string statusText_;
  std::unique_ptr<File> log_;
  std::uint64_t logSize_ = 0;
};

// Serious errors in subpictures share one count: four are shown, the fourth says that it is the
// last, later ones are logged. The count starts anew with each file set.
class ReportLimit {
 public:
  explicit ReportLimit(Reporter& reporter) : reporter_(reporter) {}
  void Reset();
  void Report(const std::string& text);
  // Shows a text that is worth saying once; from the second time on it is only logged. Does not
  // count with the others.
  void ReportOnce(const std::string& text);
  // From now on everything is only logged.
  void Silence() { count_ = kShownReports; }
  [[nodiscard]] int Count() const { return count_; }

 private:
  static constexpr int kShownReports = 4;

  Reporter& reporter_;
  std::atomic<int> count_ = 0;
  std::mutex mutex_;
  std::set<std::string> shown_;
};

}  // namespace quillomar
