#include "cli/cli_front_end.h"

#include <chrono>
#include <future>
#include <istream>

#include "base/platform.h"
#include "editor/job_labels.h"

namespace quillomar {
namespace {

constexpr auto kStatusInterval = std::chrono::milliseconds(200);

bool Ask(const CliStreams& streams, bool yes, const std::string& question) {
  if (yes) return true;
  streams.err << question << '\n';
  if (!streams.inIsTerminal) {
    streams.err << "Nobody is here to answer; --yes says yes.\n";
    return false;
  }
  streams.err << "[y/N] " << std::flush;
  std::string answer;
  std::getline(streams.in, answer);
  return !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y');
}

}  // namespace

void InstallCliHooks(Session& session, const CliStreams& streams, bool yes) {
  const auto ask = [streams, yes](const std::string& question) {
    return Ask(streams, yes, question);
  };
  const auto showError = [streams](const std::string& text) {
    streams.err << text << (text.ends_with('\n') ? "" : "\n");
    return 1;
  };
  session.reporter.InstallHooks({showError, ask, ask});
}

void TerminalJobRunner::Run(std::function<void()> work, std::function<void()> finished) {
  std::future<void> worker = std::async(std::launch::async, std::move(work));
  while (worker.wait_for(kStatusInterval) != std::future_status::ready) ShowStatus();
  worker.get();
  err_ << "\r\x1b[K" << std::flush;
  finished();
}

void TerminalJobRunner::ShowStatus() {
  const std::string pace = JobPaceText(session_.job, MonotonicMs());
  const std::string status = pace.empty() ? session_.reporter.StatusText() : pace;
  err_ << '\r' << status << "\x1b[K" << std::flush;
}

}  // namespace quillomar
