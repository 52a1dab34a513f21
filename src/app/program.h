#pragma once

#include <string>

#include "app/command_line.h"
#include "editor/editor.h"
#include "editor/session.h"
#include "settings/settings_store.h"
#include "ui/dialogs.h"
#include "ui/main_window.h"
#include "ui/qt_front_end.h"
#include "ui/qt_job_runner.h"
#include "ui/window_rect.h"

namespace quillomar {

// The program with its window, from start to end. Needs a QApplication and a prepared environment.
class Program {
 public:
  // `place` says where the settings file is. Sound goes to `sound`, which may be null.
  Program(FileSystem& files, Dialogs& dialogs, const ProgramPlace& place,
          AudioOutput* sound = nullptr);
  // Stops a job that still runs.
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Reads the settings, shows the window and opens what the command line asks for.
  void Start(StartUpRequest request);

  [[nodiscard]] MainWindow& Window() { return window_; }
  [[nodiscard]] Editor& TheEditor() { return editor_; }
  [[nodiscard]] const SettingsStore& Settings() const { return settings_; }

 private:
  void BindSettings();
  void OpenRequested(const StartUpRequest& request);

  Session session_;
  QtFrontEnd frontEnd_;
  QtJobRunner runner_;
  Editor editor_;
  MainWindow window_;
  WidgetRect mainRect_;
  WidgetRect scanRect_;
  WidgetRect applyAllRect_;
  WidgetRect zoomRect_;
  SettingsStore settings_;
};

}  // namespace quillomar
