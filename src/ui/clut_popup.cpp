#include "ui/clut_popup.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

#include "ui/control_names.h"
#include "ui/swatch_button.h"

namespace quillomar {
namespace {

constexpr int kColumns = 4;

int StepOf(int key) {
  switch (key) {
    case Qt::Key_Left:
      return -1;
    case Qt::Key_Right:
      return 1;
    case Qt::Key_Up:
      return -kColumns;
    case Qt::Key_Down:
      return kColumns;
    default:
      return 0;
  }
}

}  // namespace

ClutPopup::ClutPopup(QWidget* parent) : QFrame(parent, Qt::Popup) {
  setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  setObjectName("clutPopup");
  setAccessibleName("Entries of the CLUT");
  auto* const layout = new QGridLayout(this);
  layout->setSpacing(0);
  layout->setContentsMargins(2, 2, 2, 2);
  for (int entry = 0; entry < kClutSize; ++entry) {
    auto* const button = new SwatchButton(this);
    button->setText(QString::number(entry));
    button->installEventFilter(this);
    connect(button, &SwatchButton::Picked, this, [this, entry] {
      close();
      emit Chosen(entry);
    });
    layout->addWidget(button, entry / kColumns, entry % kColumns);
    entries_.at(static_cast<std::size_t>(entry)) = button;
  }
}

void ClutPopup::OpenAt(const QWidget& anchor, const RgbClut& clut, int current) {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const QColor colour(clut[i].r, clut[i].g, clut[i].b);
    const QString text = QString("CLUT entry %1: %2").arg(i).arg(colour.name());
    NameControl(*entries_[i], QString("clutEntry%1").arg(i), text, text);
    entries_[i]->SetColour(colour);
  }
  adjustSize();
  QPoint place = anchor.mapToGlobal(QPoint(0, anchor.height()));
  const QRect screen = anchor.screen()->availableGeometry();
  if (place.y() + height() > screen.bottom()) place -= QPoint(0, anchor.height() + height());
  place.setX(std::min(place.x(), screen.right() - width()));
  move(place);
  show();
  entries_.at(static_cast<std::size_t>(std::clamp(current, 0, kClutSize - 1)))->setFocus();
}

bool ClutPopup::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QFrame::eventFilter(watched, event);
  const auto found = std::find(entries_.begin(), entries_.end(), watched);
  return MoveFocus(static_cast<int>(found - entries_.begin()),
                   static_cast<QKeyEvent*>(event)->key());
}

bool ClutPopup::MoveFocus(int from, int key) {
  const int step = StepOf(key);
  const int target = from + step;
  if (step != 0 && target >= 0 && target < kClutSize) {
    entries_.at(static_cast<std::size_t>(target))->setFocus();
  }
  return step != 0;
}

}  // namespace quillomar
