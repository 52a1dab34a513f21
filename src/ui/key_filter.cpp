#include "ui/key_filter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <algorithm>

#include "editor/editor.h"
#include "ui/kept_keys.h"
#include "ui/swatch_button.h"

namespace quillomar {
namespace {

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Space is a command's key, so Return presses a button that gets it. Buttons that do something of
// their own on Return are left to it.
bool PressedByReturn(QObject& watched, const QEvent& event) {
  if (event.type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<const QKeyEvent&>(event);
  const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  auto* const button = qobject_cast<QAbstractButton*>(&watched);
  if (!isReturn || button == nullptr || qobject_cast<SwatchButton*>(button) != nullptr)
    return false;
  button->click();
  return true;
}

bool LeavesKey(KeyScope scope, KeptKeys kept) {
  switch (scope) {
    case KeyScope::kWindow:
      return true;
    case KeyScope::kNotInText:
      return kept == KeptKeys::kNone || kept == KeptKeys::kSteps;
    case KeyScope::kOcrText:
      return kept == KeptKeys::kText;
  }
  return false;
}

}  // namespace

KeyFilter::KeyFilter(Editor& editor, QObject* parent) : QObject(parent), editor_(editor) {
  for (const Command& command : Commands()) {
    if (command.key.empty()) continue;
    for (const QKeySequence& key : QKeySequence::listFromString(ToQString(command.key))) {
      commands_.insert(key, command.id);
    }
  }
  qApp->installEventFilter(this);
}

bool KeyFilter::Watches(const QObject* receiver) const {
  const auto* const widget = qobject_cast<const QWidget*>(receiver);
  if (widget == nullptr || !widget->window()->isEnabled() ||
      QApplication::activePopupWidget() != nullptr ||
      QApplication::activeModalWidget() != nullptr ||
      KeysKeptBy(QApplication::focusWidget()) == KeptKeys::kAll) {
    return false;
  }
  return std::find(windows_.begin(), windows_.end(), widget->window()) != windows_.end();
}

bool KeyFilter::eventFilter(QObject* watched, QEvent* event) {
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!isKey || !Watches(watched)) return QObject::eventFilter(watched, event);
  const auto command = CommandOf(static_cast<const QKeyEvent&>(*event));
  if (!command) return PressedByReturn(*watched, *event) || QObject::eventFilter(watched, event);
  // Claims the key, so that no shortcut of a control takes it first.
  event->accept();
  if (event->type() == QEvent::KeyPress) editor_.Run(*command);
  return true;
}

std::optional<CommandId> KeyFilter::CommandOf(const QKeyEvent& event) const {
  const auto keypad = Qt::KeyboardModifiers(Qt::KeypadModifier);
  const QKeySequence pressed(QKeyCombination(event.modifiers() & ~keypad, Qt::Key(event.key())));
  const auto found = commands_.constFind(pressed);
  if (found == commands_.constEnd()) return std::nullopt;
  const KeptKeys kept = KeysKeptBy(QApplication::focusWidget());
  const bool isStep = *found == CommandId::kPrevious || *found == CommandId::kNext;
  if (kept == KeptKeys::kSteps && isStep) return std::nullopt;
  if (!LeavesKey(FindCommandById(*found).scope, kept)) return std::nullopt;
  return *found;
}

}  // namespace quillomar
