#pragma once

#include <QObject>

namespace quillomar {

class Editor;

// Tells the editor how long a key or a mouse button is held: what a slider or an arrow does
// meanwhile is one step of the history, also where it repeats by itself.
class HoldFilter final : public QObject {
  Q_OBJECT

 public:
  HoldFilter(Editor& editor, QObject* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Editor& editor_;
};

}  // namespace quillomar
