#include "ui/step_button.h"

#include "ui/control_names.h"

namespace quillomar {

QToolButton* MakeStepButton(Qt::ArrowType arrow, const QString& objectName,
                            const QString& accessibleName, const QString& toolTip,
                            QWidget* parent) {
  auto* const button = new QToolButton(parent);
  NameControl(*button, objectName, accessibleName, toolTip);
  button->setArrowType(arrow);
  button->setAutoRepeat(true);
  button->setFocusPolicy(Qt::StrongFocus);
  return button;
}

}  // namespace quillomar
