#pragma once

#include <QString>
#include <QToolButton>

namespace quillomar {

// A small arrow button that steps through a list; keeps stepping while held.
[[nodiscard]] QToolButton* MakeStepButton(Qt::ArrowType arrow, const QString& objectName,
                                          const QString& accessibleName, const QString& toolTip,
                                          QWidget* parent);

}  // namespace quillomar
