#include "ui/kept_keys.h"

#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QVariant>
#include <QWidget>

namespace quillomar {
namespace {

constexpr const char* kProperty = "keptKeys";

// The box inside a number control takes digits only, which are no command's keys.
bool IsFreeTextBox(const QWidget* widget) {
  return qobject_cast<const QLineEdit*>(widget) != nullptr &&
         qobject_cast<const QAbstractSpinBox*>(widget->parentWidget()) == nullptr;
}

}  // namespace

void KeepKeys(QWidget& control, KeptKeys kept) {
  control.setProperty(kProperty, static_cast<int>(kept));
}

KeptKeys KeysKeptBy(const QWidget* control) {
  if (control == nullptr) return KeptKeys::kNone;
  const QVariant kept = control->property(kProperty);
  if (kept.isValid()) return static_cast<KeptKeys>(kept.toInt());
  return IsFreeTextBox(control) ? KeptKeys::kAll : KeptKeys::kNone;
}

}  // namespace quillomar
