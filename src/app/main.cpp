#include <QApplication>
#include <clocale>
#include <vector>

#include "app/program.h"
#include "base/platform.h"
#include "ui/program_icon.h"
#include "ui/qt_audio_output.h"

namespace {

std::vector<std::string> Arguments() {
  std::vector<std::string> arguments;
  for (const QString& argument : QApplication::arguments().mid(1)) {
    arguments.push_back(argument.toStdString());
  }
  return arguments;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace quillomar;
  PrepareEnvironment();
  const std::string firstArgument = argc > 0 ? argv[0] : "";
  const QApplication application(argc, argv);
  // It has taken over the user's locale; the program's texts have a decimal point in every one.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setWindowIcon(ProgramIcon());

  const auto files = MakeDiskFileSystem();
  QtDialogs dialogs;
  QtAudioOutput sound;
  Program program(*files, dialogs, ProgramPlace::OfProcess(firstArgument), &sound);
  dialogs.SetParent(&program.Window());
  program.Start(ParseCommandLine(Arguments()));
  return QApplication::exec();
}
