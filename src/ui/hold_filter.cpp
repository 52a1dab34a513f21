#include "ui/hold_filter.h"

#include <QApplication>
#include <QKeyEvent>

#include "editor/editor.h"

namespace quillomar {
namespace {

bool IsRepeated(const QEvent& event) {
  return static_cast<const QKeyEvent&>(event).isAutoRepeat();
}

bool IsPress(const QEvent& event) {
  return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick ||
         (event.type() == QEvent::KeyPress && !IsRepeated(event));
}

bool IsRelease(const QEvent& event) {
  return event.type() == QEvent::MouseButtonRelease ||
         (event.type() == QEvent::KeyRelease && !IsRepeated(event));
}

}  // namespace

HoldFilter::HoldFilter(Editor& editor, QObject* parent) : QObject(parent), editor_(editor) {
  qApp->installEventFilter(this);
}

bool HoldFilter::eventFilter(QObject* watched, QEvent* event) {
  // Windows get an event once, and before any control; controls pass it on to their parents.
  if (watched->isWindowType() && IsPress(*event)) editor_.BeginHold();
  if (watched->isWindowType() && IsRelease(*event)) {
    // A button acts when it gets the release, which still belongs to the hold.
    QMetaObject::invokeMethod(
        this, [this] { editor_.EndHold(); }, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quillomar
