#include "app/program.h"

#include "base/paths.h"
#include "base/platform.h"
#include "ui/apply_all_dialog.h"
#include "ui/progress_window.h"
#include "ui/zoom_window.h"

namespace quillomar {

Program::Program(FileSystem& files, Dialogs& dialogs, const ProgramPlace& place, AudioOutput* sound)
    : session_(files, place.stateFolder),
      frontEnd_(dialogs, sound),
      editor_(session_, frontEnd_, runner_),
      window_(editor_, frontEnd_),
      mainRect_(window_),
      scanRect_(window_.Progress()),
      applyAllRect_(window_.ApplyAll()),
      zoomRect_(window_.Zoom()),
      settings_(files, place) {
  settings_.Open("", false);
  session_.dataFolder = place.appData.value_or("");
  session_.makeOcrEngine = [this] {
    return MakeOcrEngine(session_.files, session_.reporter, OcrDatabaseFolder(session_.dataFolder));
  };
  session_.reporter.InstallHooks(frontEnd_.Hooks());
}

Program::~Program() {
  session_.job.abortRequested = true;
  runner_.Wait();
}

void Program::Start(StartUpRequest request) {
  ChooseTitleSet(request, session_.files);
  BindSettings();
  if (const auto folder = EnvironmentVariable("TEMP")) {
    session_.logPath = JoinPath(*folder, "Quillomar.log");
  }
  editor_.ReadRecentFiles();
  window_.OnClosing([this] { SaveAllSettings(settings_, session_.preferences); });
  editor_.Run(CommandId::kRedraw);
  window_.show();
  OpenRequested(request);
}

void Program::BindSettings() {
  SettingsWindows windows;
  windows.main = &mainRect_;
  windows.scan = &scanRect_;
  windows.applyAll = &applyAllRect_;
  windows.zoom = &zoomRect_;
  BindAllSettings(settings_, session_.preferences, windows);
}

void Program::OpenRequested(const StartUpRequest& request) {
  switch (ActionFor(request)) {
    case StartUpAction::kNothing:
      break;
    case StartUpAction::kRefuse:
      session_.reporter.ReportError(kUnsupportedFileText);
      break;
    case StartUpAction::kFullDomain:
      editor_.OpenFiles({request.files.front()}, true);
      break;
    case StartUpAction::kVobs:
    case StartUpAction::kSup:
      editor_.OpenFiles(request.files, false);
      break;
  }
}

}  // namespace quillomar
