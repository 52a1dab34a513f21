#include "ui/qt_video_host.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <utility>

namespace quillomar {

void QtVideoHost::Post(std::function<void()> action) {
  QMetaObject::invokeMethod(this, std::move(action), Qt::QueuedConnection);
}

// Keys and clicks wait: a command inside a command would find things half done.
void QtVideoHost::Pump() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace quillomar
