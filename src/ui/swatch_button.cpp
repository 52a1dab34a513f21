#include "ui/swatch_button.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace quillomar {
namespace {

constexpr int kLightness = 140;  // of 255; text on brighter colours is black
constexpr int kMargin = 3;

QColor TextOn(const QColor& colour) {
  return qGray(colour.rgb()) > kLightness ? Qt::black : Qt::white;
}

}  // namespace

SwatchButton::SwatchButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void SwatchButton::SetColour(const QColor& colour) {
  colour_ = colour;
  update();
}

void SwatchButton::SetHatched(bool hatched) {
  hatched_ = hatched;
  update();
}

void SwatchButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRect area = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  const QColor fill = colour_.isValid() ? colour_ : palette().color(QPalette::Button);
  painter.fillRect(area, fill);
  if (hatched_) painter.fillRect(area, QBrush(TextOn(fill), Qt::BDiagPattern));
  painter.setPen(Qt::black);
  painter.drawRect(area.adjusted(0, 0, -1, -1));
  // So that a dark color in dark surroundings has an edge.
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(area.adjusted(-1, -1, 0, 0));
  if (hatched_ || !colour_.isValid()) return;
  painter.setPen(TextOn(fill));
  painter.drawText(area, Qt::AlignCenter, text());
}

void SwatchButton::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
      emit Picked(event->modifiers().testFlag(Qt::ShiftModifier));
      break;
    default:
      QAbstractButton::keyPressEvent(event);
  }
}

void SwatchButton::mouseReleaseEvent(QMouseEvent* event) {
  const bool hit = isDown() && rect().contains(event->position().toPoint());
  const bool edit = event->modifiers().testFlag(Qt::ShiftModifier);
  QAbstractButton::mouseReleaseEvent(event);
  if (hit && event->button() == Qt::LeftButton) emit Picked(edit);
}

}  // namespace quillomar
