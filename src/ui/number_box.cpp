#include "ui/number_box.h"

#include <QSignalBlocker>
#include <algorithm>

namespace quillomar {

QSpinBox* MakeNumberBox(int smallest, int largest, QWidget* parent) {
  auto* const box = new QSpinBox(parent);
  box->setRange(smallest, largest);
  box->setKeyboardTracking(false);
  box->setAlignment(Qt::AlignRight);
  return box;
}

void ShowNumber(QSpinBox& box, int number) {
  const QSignalBlocker blocker(&box);
  box.setRange(std::min(box.minimum(), number), std::max(box.maximum(), number));
  box.setValue(number);
}

}  // namespace quillomar
