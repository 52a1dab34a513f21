#pragma once

#include <QString>
#include <QWidget>

namespace quillomar {

// Gives a control the names by which tests find it, screen readers speak it and tool tips explain
// it.
inline void NameControl(QWidget& control, const QString& objectName, const QString& accessibleName,
                        const QString& toolTip) {
  control.setObjectName(objectName);
  control.setAccessibleName(accessibleName);
  control.setToolTip(toolTip);
}

}  // namespace quillomar
