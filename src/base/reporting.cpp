#include "base/reporting.h"

#include "base/format.h"
#include "base/platform.h"

namespace quillomar {
int Reporter::ReportError(const std::string& text, int quiet) {
  if (quiet != 0) return quiet;
  return hooks_.showError ? hooks_.showError(text) : 0;
}

void Reporter::ReportReadOnly(const std::string& path) {
  ReportError(
      Format("File %s is read-only, you won't be able to save your changes!", path.c_str()));
}

void Reporter::LogLine(std::string_view text, int quiet) {
  if (quiet != 0) return;
  if (!text.empty() && text.back() == '\n') text.remove_suffix(1);
  const std::lock_guard lock(mutex_);
  statusText_ = text;
  if (!log_) return;
  const std::string line = TimeOfDay().append(" -- ").append(text).append("\n");
  const ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(line.data()), line.size());
  // A log that cannot be written must not stop the work that it describes.
  if (!Failed(log_->WriteAt(logSize_, bytes))) logSize_ += line.size();
}

bool Reporter::AskYesNo(const std::string& question) {
  return hooks_.askYesNo && hooks_.askYesNo(question);
}

bool Reporter::AskOkCancel(const std::string& question) {
  return hooks_.askOkCancel && hooks_.askOkCancel(question);
}

bool Reporter::AskRecommended(const std::string& question) {
  return hooks_.askRecommended ? hooks_.askRecommended(question) : AskYesNo(question);
}

std::string Reporter::StatusText() const {
  const std::lock_guard lock(mutex_);
  return statusText_;
}

void Reporter::ClearStatusText() {
  const std::lock_guard lock(mutex_);
  statusText_.clear();
}

void Reporter::OpenLog(const std::string& path) {
  std::unique_ptr<File> file = path.empty() ? nullptr : files_.Open(path, OpenMode::kCreate);
  const std::lock_guard lock(mutex_);
  log_ = std::move(file);
  logSize_ = 0;
}

void Reporter::CloseLog() {
  const std::lock_guard lock(mutex_);
  log_.reset();
}

void ReportLimit::Reset() {
  count_ = 0;
  const std::lock_guard lock(mutex_);
  shown_.clear();
}

void ReportLimit::ReportOnce(const std::string& text) {
  const bool isNew = [&] {
    const std::lock_guard lock(mutex_);
    return shown_.insert(text).second;
  }();
  if (isNew) {
    reporter_.ReportError(text);
  } else {
    reporter_.LogLine(text);
  }
}

void ReportLimit::Report(const std::string& text) {
  const int before = count_.fetch_add(1);
  if (before >= kShownReports) {
    reporter_.LogLine(text);
    return;
  }
  const bool last = before == kShownReports - 1;
  reporter_.ReportError(last ? text + "\nI won't report this error again" : text);
}

}  // namespace quillomar
