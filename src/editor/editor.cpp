#include "editor/editor.h"

#include <algorithm>

#include "base/platform.h"
#include "editor/job_labels.h"
#include "editor/view_builder.h"

namespace quillomar {
namespace {

// During a scan the list is shown anew at every fifth tick.
constexpr int kTicksPerListRefresh = 5;

bool GrowsList(Operation operation) {
  return operation == Operation::kScanning || operation == Operation::kLoadingRecent;
}

}  // namespace

Editor::Editor(Session& session, FrontEnd& frontEnd, JobRunner& runner)
    : session_(session),
      frontEnd_(frontEnd),
      runner_(runner),
      document_(session),
      recent_(session.files),
      ocr_(session, document_),
      video_({session, frontEnd, document_, selection_, view_, look_, [this] { UpdateView(); }}) {}

bool Editor::Enabled(const Command& command) const {
  switch (command.guard) {
    case Guard::kAlways:
      return true;
    case Guard::kIdle:
      return !busy_;
    case Guard::kIdleWithSet:
      return !busy_ && document_.IsOpen();
    case Guard::kIdleWithUnit:
      return !busy_ && selection_.Current() != nullptr;
    case Guard::kIdleWithFrame:
      return !busy_ && view_.video.frame != nullptr;
    case Guard::kIdleWithUndo:
      return !busy_ && document_.History().ToUndo() != nullptr;
    case Guard::kIdleWithRedo:
      return !busy_ && document_.History().ToRedo() != nullptr;
    case Guard::kIdleWithVideo:
      return !busy_ && video_.Available();
  }
  return false;
}

void Editor::Run(CommandId id) {
  const Command& command = FindCommandById(id);
  if (Enabled(command)) (this->*command.handler)();
}

void Editor::StartJob(Operation operation, const std::string& title, Work work, Work afterwards) {
  if (busy_) return;
  busy_ = true;
  jobChangesUnits_ = !GrowsList(operation);
  video_.MakeWay(jobChangesUnits_);
  ticks_ = 0;
  jobStart_ = std::chrono::steady_clock::now();
  session_.job.abortRequested = false;
  session_.job.percent = 0;
  session_.job.items = 0;
  refused_ = 0;
  session_.job.operation = operation;
  session_.reporter.ClearStatusText();
  video_.Fill();
  frontEnd_.JobStarted(title);
  runner_.Run(std::move(work), [this, afterwards = std::move(afterwards)] {
    if (afterwards) afterwards();
    busy_ = false;
    jobChangesUnits_ = false;
    session_.job.operation = Operation::kNone;
    session_.job.percent = 0;
    frontEnd_.JobEnded();
    shown_.reset();
    RefillList();
  });
}

std::string Editor::JobLabel() const {
  return JobLabelText(session_.job.operation);
}

std::string Editor::JobTimeLeft() const {
  using std::chrono::milliseconds;
  std::string pace = JobPaceText(session_.job, MonotonicMs());
  if (!pace.empty()) return pace;
  const auto elapsed = std::chrono::steady_clock::now() - jobStart_;
  return TimeLeftText(session_.job.operation, session_.job.percent,
                      std::chrono::duration_cast<milliseconds>(elapsed));
}

bool Editor::JobCanStop() const {
  return CanStop(session_.job.operation);
}

void Editor::Tick() {
  if (!busy_) return;
  const Operation operation = session_.job.operation;
  if (operation != Operation::kNone && operation != Operation::kScanning) {
    const int percent = session_.job.percent;
    session_.reporter.LogLine(std::to_string(percent) + "% done");
  }
  if (GrowsList(operation) && ++ticks_ % kTicksPerListRefresh == 0) RefillList();
}

void Editor::RefillList() {
  if (jobChangesUnits_) return;
  selection_.Refill(document_.Units());
  UpdateView();
}

void Editor::UpdateView() {
  if (jobChangesUnits_) return;
  const UnitPointer current = selection_.Current();
  const bool isOther = current != shown_;
  shown_ = current;
  if (isOther) {
    look_.button = 0;
    selectedText_.reset();
  }
  document_.History().Close();
  // The list of streams rests while video plays and where no program chain tells about them.
  std::vector<std::string> streams = std::move(view_.streams);
  view_ = BuildView(document_, selection_, session_.preferences, look_);
  const bool known = current && document_.Cells().Find(current->vcid) != nullptr;
  const bool asMany = streams.size() == view_.streams.size();
  if (video_.Playing() || (!known && asMany)) view_.streams = std::move(streams);
  view_.canEdit = view_.hasUnit && !busy_;
  if (!busy_) view_.aspect = document_.Results().aspect;
  view_.place.flush = last_.flushToBorder;
  video_.Fill();
  if (isOther) FollowStreamsModes();
  view_.screenMode = CurrentScreenMode();
  frontEnd_.Refresh();
  video_.WantFrame();
  if (!video_.Playing()) WarnIfOnly4x3();
}

void Editor::WarnIfOnly4x3() {
  const UnitPointer unit = selection_.Current();
  if (session_.warnedOfOnly4x3 || session_.preferences.warnIfOnly4x3 == 0 || !unit) return;
  const CellEntry* const cell = document_.Cells().Find(unit->vcid);
  if (cell == nullptr || !OnlyFor4x3(*cell)) return;
  session_.warnedOfOnly4x3 = true;
  session_.reporter.ReportError(
      "Warning! This VTS can only be displayed as a 4:3 aspect ratio\n"
      "Don't move the subtitles in the black bar or you won't be able to zoom on your TV.");
}

void Editor::Redraw() {
  video_.Renew();
  UpdateView();
}

void Editor::ShowPreferences() {
  frontEnd_.ShowPreferences();
  if (selection_.filter.search) FilterBySearchText(true);
  UpdateView();
}

void Editor::Abort() {
  if (busy_) session_.job.abortRequested = true;
}

void Editor::Exit() {
  frontEnd_.CloseWindow();
}

}  // namespace quillomar
