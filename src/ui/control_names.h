#pragma once

#include <QList>
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

// The Tab key goes through controls of one window in this order.
inline void OrderTabs(const QList<QWidget*>& controls) {
  for (qsizetype i = 1; i < controls.size(); ++i) {
    QWidget::setTabOrder(controls[i - 1], controls[i]);
  }
}

// What Tab stops at in a part of a window, in its order there.
inline QList<QWidget*> TabStops(QWidget& part) {
  QList<QWidget*> stops;
  QWidget* widget = &part;
  do {
    const bool isStop = (widget->focusPolicy() & Qt::TabFocus) != 0 && !widget->focusProxy();
    if (isStop && (widget == &part || part.isAncestorOf(widget))) stops << widget;
    widget = widget->nextInFocusChain();
  } while (widget != &part);
  return stops;
}

}  // namespace quillomar
