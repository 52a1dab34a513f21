#include "ui/program_icon.h"

#include <QPainter>
#include <QPixmap>

namespace quillomar {
namespace {

// Drawn in units of a 32 x 32 grid.
QPixmap DrawIcon(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / 32.0, size / 32.0);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(38, 50, 72));
  painter.drawRoundedRect(QRectF(1, 4, 30, 24), 4, 4);
  painter.setBrush(QColor(245, 206, 80));
  painter.drawRoundedRect(QRectF(5, 17, 22, 3), 1.5, 1.5);
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(QRectF(9, 22, 14, 3), 1.5, 1.5);
  return pixmap;
}

}  // namespace

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 32, 48, 128}) icon.addPixmap(DrawIcon(size));
  return icon;
}

}  // namespace quillomar
