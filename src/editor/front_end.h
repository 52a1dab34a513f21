#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/job_control.h"
#include "dvd/clut.h"
#include "dvd/video_standard.h"
#include "editor/last_modifications.h"
#include "editor/video_host.h"

namespace quillomar {

// What a file dialog is opened with.
struct FileRequest {
  std::string title;
  std::string
      filter;  // "VOB Files (*.vob)|*.vob||": label and pattern by turns, closed by an empty one
  std::string folder;  // where it starts; empty: the system's choice
  std::string name;    // proposed name
  bool several = false;
  bool forSaving = false;
  int* filterIndex = nullptr;  // filter preselected and then chosen, from 0; null: the first
};

// What the question by how much to move start times is asked with.
struct RetimeRequest {
  std::string title;
  double range = 0;  // seconds either way
  VideoStandard standard = VideoStandard::kUnknown;
};

// Everything that a command may want from a front end beyond messages and questions. Called on the
// thread that runs commands.
class FrontEnd {
 public:
  virtual ~FrontEnd() = default;

  // Paths chosen; empty when the user cancelled.
  virtual std::vector<std::string> ChooseFiles(const FileRequest& request) = 0;
  // Index of the item chosen; nothing when the user cancelled.
  virtual std::optional<int> ChooseItem(const std::string& title,
                                        const std::vector<std::string>& items) = 0;
  // Starts a program with one argument line, split as a shell does, and a file, and waits for its
  // end while the window stays alive. False when it could not be started.
  virtual bool RunProgram(const std::string& program, const std::string& arguments,
                          const std::string& file) = 0;
  // Which of the last modifications to apply to all; those not offered cannot be chosen. A front
  // end that cannot ask chooses nothing.
  virtual std::optional<ApplyAllChoices> ChooseModifications(const ApplyAllChoices& /*offered*/) {
    return std::nullopt;
  }
  // Seconds by which start times are to change, below 0 for earlier; nothing when the user
  // cancelled. A front end that cannot ask changes nothing.
  virtual std::optional<double> ChooseStartChange(const RetimeRequest& /*request*/) {
    return std::nullopt;
  }
  virtual std::optional<Rgb> ChooseColour(const std::string& title, Rgb start) = 0;
  // Opens a document or page with the program that the system keeps for it.
  virtual bool OpenDocument(const std::string& pathOrUrl) = 0;
  // A plain message.
  virtual void ShowMessage(const std::string& text) = 0;
  virtual void ShowAbout() = 0;
  // Lets the user change the preferences.
  virtual void ShowPreferences() = 0;
  // Writes the manual (PDF) to a path; fails without a word when it cannot.
  virtual void ExtractManual(const std::string& path) = 0;
  // Address of one of the program's own pages, by file name.
  virtual std::string PageAddress(const std::string& page) = 0;
  virtual void CloseWindow() = 0;
  // The pointer says that the program is busy for a moment, until it is told otherwise.
  virtual void ShowBusy(bool /*on*/) {}
  // A sound says that nothing was found.
  virtual void Beep() {}
  // Brings the keyboard to the box for the characters to be found, and empties it.
  virtual void FocusCharacters() {}

  // Null for a front end that shows no video.
  virtual VideoHost* Video() { return nullptr; }

  // The file set, the list or the current unit has changed: show it anew.
  virtual void Refresh() = 0;
  // A job has begun or ended.
  virtual void JobStarted(const std::string& title) = 0;
  virtual void JobEnded() = 0;
};

// Runs one job at a time. `work` runs on the worker, `finished` on the thread that called Run.
class JobRunner {
 public:
  virtual ~JobRunner() = default;
  virtual void Run(std::function<void()> work, std::function<void()> finished) = 0;
};

// Runs jobs on the calling thread, before Run returns.
class InlineJobRunner final : public JobRunner {
 public:
  void Run(std::function<void()> work, std::function<void()> finished) override {
    work();
    finished();
  }
};

}  // namespace quillomar
