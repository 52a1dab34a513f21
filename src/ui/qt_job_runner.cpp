#include "ui/qt_job_runner.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <utility>

namespace quillomar {

void QtJobRunner::Wait() {
  while (Running()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtJobRunner::Run(std::function<void()> work, std::function<void()> finished) {
  thread_ = std::thread([this, work = std::move(work), finished = std::move(finished)] {
    work();
    // The join only waits for the thread's last instructions: nothing is asked any more.
    QMetaObject::invokeMethod(
        this,
        [this, finished] {
          thread_.join();
          finished();
        },
        Qt::QueuedConnection);
  });
}

}  // namespace quillomar
