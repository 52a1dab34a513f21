#include "ui/external_tool.h"

#include <QEventLoop>
#include <QProcess>

namespace quillomar {

bool RunTool(const QString& program, const QStringList& arguments) {
  QProcess process;
  QEventLoop loop;
  process.setProcessChannelMode(QProcess::ForwardedChannels);
  process.setStandardInputFile(QProcess::nullDevice());
  QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
  process.start(program, arguments);
  if (!process.waitForStarted()) return false;
  // A short-lived program may be gone by now.
  if (process.state() != QProcess::NotRunning) loop.exec();
  return true;
}

}  // namespace quillomar
