// How long the window takes to answer a key or a click, until everything is painted again.
// usage: window_benchmark FILE...: a set of files as the window opens them.

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "app/program.h"
#include "base/platform.h"

namespace {

using namespace quillomar;

constexpr int kRepetitions = 101;
constexpr double kNsPerMs = 1e6;

void Press(MainWindow& window, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, modifiers);
    QApplication::sendEvent(window.windowHandle(), &event);
  }
}

// One line of the table: what is done, the median and the longest time.
void Measure(const char* what, const std::function<void(int)>& action) {
  std::vector<double> times;
  for (int i = 0; i < kRepetitions; ++i) {
    QElapsedTimer timer;
    timer.start();
    action(i);
    QApplication::sendPostedEvents();
    QApplication::processEvents();
    times.push_back(static_cast<double>(timer.nsecsElapsed()) / kNsPerMs);
  }
  std::sort(times.begin(), times.end());
  std::printf("| %s | %.1f | %.1f |\n", what, times[times.size() / 2], times.back());
}

void GiveTexts(Editor& editor) {
  int number = 0;
  for (const UnitPointer& unit : editor.Doc().Units()) {
    Document::Unrecorded(unit).ocrText = {
        "A line of some forty characters, no. " + std::to_string(++number),
        "and another one below it"};
  }
}

void MeasureAll(Program& program) {
  Editor& editor = program.TheEditor();
  MainWindow& window = program.Window();
  std::printf("%d subpictures\n\n| | median, ms | longest, ms |\n|---|---|---|\n",
              editor.CurrentView().count);
  Measure("next subpicture (Right)", [&](int) { Press(window, Qt::Key_Right); });
  Measure("last and first (End, Home)",
          [&](int i) { Press(window, i % 2 == 0 ? Qt::Key_End : Qt::Key_Home); });
  Measure("crop (Ctrl+E)", [&](int) {
    Press(window, Qt::Key_Right);
    Press(window, Qt::Key_E, Qt::ControlModifier);
  });
  auto& modified = *window.findChild<QCheckBox*>("modifiedOnly");
  Measure("filter on and off", [&](int) { modified.click(); });
  if (modified.isChecked()) modified.click();
  GiveTexts(editor);
  window.findChild<QLineEdit*>("searchText")->setText("found nowhere");
  Measure("search through the whole list (F3)", [&](int) { editor.Run(CommandId::kFindNext); });
  window.findChild<QCheckBox*>("withCharacters")->click();
  auto& characters = *window.findChild<QLineEdit*>("characters");
  Measure("filter by characters, typed",
          [&](int i) { characters.setText(QString::number(i % 10)); });
}

}  // namespace

int main(int argc, char** argv) {
  PrepareEnvironment();
  QApplication application(argc, argv);
  const auto files = MakeDiskFileSystem();
  QtDialogs dialogs;
  Program program(*files, dialogs, ProgramPlace::OfProcess(argv[0]));
  StartUpRequest request;
  request.files.assign(argv + 1, argv + argc);
  program.Start(request);
  while (program.TheEditor().Busy()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  if (program.TheEditor().CurrentView().count == 0) return 1;
  MeasureAll(program);
  return 0;
}
