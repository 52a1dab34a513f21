#include "ui/focus_mark.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>

#include "ui/kept_keys.h"

namespace quillomar {
namespace {

constexpr double kWidth = 2.0;
constexpr double kRadius = 3.0;

// The ring lies above its window and not between the control and what holds it, which would cut it
// off.
class AboveAll final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_FocusFrame_AboveWidget ? 1
                                             : QProxyStyle::styleHint(hint, option, widget, data);
  }
};

class Ring final : public QFocusFrame {
 public:
  Ring() { setStyle(&style_); }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kWidth));
    const double inset = kWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius,
                            kRadius);
  }

 private:
  AboveAll style_;
};

// Windows that take the keyboard as a whole have no control to be marked. Where keys mean something
// else, and in what pops up, it is told also after a click.
bool IsMarked(const QWidget* control) {
  return control != nullptr && !control->isWindow() &&
         (control->window()->testAttribute(Qt::WA_KeyboardFocusChange) ||
          control->window()->windowType() == Qt::Popup || KeysKeptBy(control) == KeptKeys::kSteps);
}

}  // namespace

FocusMark::FocusMark(QObject* parent) : QObject(parent) {
  // Later: how the focus came is known only when it has come.
  connect(qApp, &QApplication::focusChanged, this, &FocusMark::Follow, Qt::QueuedConnection);
}

FocusMark::~FocusMark() {
  delete ring_;
}

void FocusMark::Follow() {
  QWidget* const control = QApplication::focusWidget();
  if (!ring_) ring_ = new Ring;
  ring_->setWidget(IsMarked(control) ? control : nullptr);
}

}  // namespace quillomar
