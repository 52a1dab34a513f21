#pragma once

#include <QAbstractButton>
#include <QColor>

namespace quillomar {

// A button that shows a colour, with a short text on it so that the colour is not its only sign.
class SwatchButton final : public QAbstractButton {
  Q_OBJECT

 public:
  explicit SwatchButton(QWidget* parent = nullptr);

  void SetColour(const QColor& colour);
  // Hatched: the colour is not in use.
  void SetHatched(bool hatched);

  [[nodiscard]] const QColor& Colour() const { return colour_; }
  [[nodiscard]] QSize sizeHint() const override { return {64, 30}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {32, 24}; }

 signals:
  // Pressed with the mouse or with Space, Return or Down; `edit` with Shift held.
  void Picked(bool edit);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QColor colour_;
  bool hatched_ = false;
};

}  // namespace quillomar
