#include "ui/key_filter.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSpinBox>
#include <algorithm>

#include "editor/editor.h"

namespace quillomar {
namespace {

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The box inside a number control takes digits only, which are no command's keys.
bool IsFreeTextBox(const QWidget* widget) {
  return qobject_cast<const QLineEdit*>(widget) != nullptr &&
         qobject_cast<const QAbstractSpinBox*>(widget->parentWidget()) == nullptr;
}

}  // namespace

KeyFilter::KeyFilter(Editor& editor, QObject* parent) : QObject(parent), editor_(editor) {
  for (const Command& command : Commands()) {
    if (command.key.empty() || command.handler == nullptr) continue;
    const QKeySequence key(ToQString(command.key), QKeySequence::PortableText);
    commands_.insert(key, command.id);
  }
  qApp->installEventFilter(this);
}

bool KeyFilter::Watches(const QObject* receiver) const {
  const auto* const widget = qobject_cast<const QWidget*>(receiver);
  if (widget == nullptr || !widget->window()->isEnabled() ||
      QApplication::activePopupWidget() != nullptr ||
      QApplication::activeModalWidget() != nullptr || IsFreeTextBox(QApplication::focusWidget())) {
    return false;
  }
  return std::find(windows_.begin(), windows_.end(), widget->window()) != windows_.end();
}

bool KeyFilter::eventFilter(QObject* watched, QEvent* event) {
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!isKey || !Watches(watched)) return QObject::eventFilter(watched, event);
  auto& key = static_cast<QKeyEvent&>(*event);
  if (event->type() == QEvent::KeyPress) return RunCommandOf(key);
  // Claims the key, so that no shortcut of a control takes it first.
  const bool ours = commands_.contains(QKeySequence(key.keyCombination()));
  if (ours) event->accept();
  return ours;
}

bool KeyFilter::RunCommandOf(const QKeyEvent& event) {
  const auto keypad = Qt::KeyboardModifiers(Qt::KeypadModifier);
  const QKeySequence pressed(QKeyCombination(event.modifiers() & ~keypad, Qt::Key(event.key())));
  const auto found = commands_.constFind(pressed);
  if (found == commands_.constEnd()) return false;
  editor_.Run(*found);
  return true;
}

}  // namespace quillomar
