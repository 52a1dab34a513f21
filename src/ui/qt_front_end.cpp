#include "ui/qt_front_end.h"

#include <QCursor>
#include <QFile>
#include <QGuiApplication>
#include <QMetaObject>
#include <QProcess>
#include <QThread>
#include <future>
#include <memory>

#include "ui/dialogs.h"
#include "ui/external_tool.h"
#include "ui/help_pages.h"

namespace quillomar {
namespace {

// Runs a function on the thread of an object and returns what it returns. The user-interface thread
// never waits for the worker, so the wait always ends.
template <typename Function>
auto OnThreadOf(QObject& object, Function function) {
  if (QThread::currentThread() == object.thread()) return function();
  const auto answer = std::make_shared<std::promise<decltype(function())>>();
  QMetaObject::invokeMethod(
      &object, [&function, answer] { answer->set_value(function()); }, Qt::QueuedConnection);
  return answer->get_future().get();
}

}  // namespace

ReportingHooks QtFrontEnd::Hooks() {
  ReportingHooks hooks;
  hooks.showError = [this](const std::string& text) {
    return OnThreadOf(*this, [&] { return dialogs_.ShowError(text); });
  };
  hooks.askYesNo = [this](const std::string& question) {
    return OnThreadOf(*this, [&] { return dialogs_.AskYesNo(question); });
  };
  hooks.askOkCancel = [this](const std::string& question) {
    return OnThreadOf(*this, [&] { return dialogs_.AskOkCancel(question); });
  };
  hooks.askRecommended = [this](const std::string& question) {
    return OnThreadOf(*this, [&] { return dialogs_.AskRecommended(question); });
  };
  return hooks;
}

std::vector<std::string> QtFrontEnd::ChooseFiles(const FileRequest& request) {
  return dialogs_.ChooseFiles(request);
}

std::optional<int> QtFrontEnd::ChooseItem(const std::string& title,
                                          const std::vector<std::string>& items) {
  return dialogs_.ChooseItem(title, items);
}

bool QtFrontEnd::RunProgram(const std::string& program, const std::string& arguments,
                            const std::string& file) {
  const QString tool = QString::fromStdString(program);
  emit ToolStarted(tool);
  const bool ran = RunTool(tool, QProcess::splitCommand(QString::fromStdString(arguments)) +
                                     QStringList(QString::fromStdString(file)));
  emit ToolEnded();
  return ran;
}

std::optional<ApplyAllChoices> QtFrontEnd::ChooseModifications(const ApplyAllChoices& offered) {
  std::optional<ApplyAllChoices> chosen;
  emit ModificationsRequested(offered, chosen);
  return chosen;
}

std::optional<double> QtFrontEnd::ChooseStartChange(const RetimeRequest& request) {
  std::optional<double> seconds;
  emit StartChangeRequested(request, seconds);
  return seconds;
}

std::optional<Rgb> QtFrontEnd::ChooseColour(const std::string& title, Rgb start) {
  return dialogs_.ChooseColour(title, start);
}

bool QtFrontEnd::OpenDocument(const std::string& pathOrUrl) {
  return dialogs_.OpenDocument(pathOrUrl);
}

void QtFrontEnd::ShowMessage(const std::string& text) {
  dialogs_.ShowMessage(text);
}

void QtFrontEnd::ShowAbout() {
  dialogs_.ShowAbout();
}

void QtFrontEnd::ShowBusy(bool on) {
  if (on) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QGuiApplication::restoreOverrideCursor();
  }
}

void QtFrontEnd::Beep() {
  dialogs_.Beep();
}

void QtFrontEnd::ExtractManual(const std::string& path) {
  const QByteArray manual = ManualPdf();
  QFile file(QString::fromStdString(path));
  if (!manual.isEmpty() && file.open(QIODevice::WriteOnly)) file.write(manual);
}

std::string QtFrontEnd::PageAddress(const std::string& page) {
  return PagePath(QString::fromStdString(page)).toStdString();
}

}  // namespace quillomar
