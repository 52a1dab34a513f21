#pragma once

#include <QFocusFrame>
#include <QObject>
#include <QPointer>

namespace quillomar {

// A ring around the control that has the keyboard, in whichever window it is. Styles mark it too,
// but some controls so faintly that it cannot be seen. Comes with the first use of the keyboard.
class FocusMark final : public QObject {
  Q_OBJECT

 public:
  explicit FocusMark(QObject* parent);
  ~FocusMark() override;
  FocusMark(const FocusMark&) = delete;
  FocusMark& operator=(const FocusMark&) = delete;

 private:
  void Follow();

  QPointer<QFocusFrame> ring_;  // a child of the window it is in, if it is in one
};

}  // namespace quillomar
