#pragma once

#include <QColor>
#include <QComboBox>
#include <QImage>
#include <QWidget>

#include "editor/view.h"

class QScrollArea;

namespace quillomar {

// The subpicture's pixels as large squares.
class ZoomCanvas final : public QWidget {
  Q_OBJECT

 public:
  explicit ZoomCanvas(QWidget* parent = nullptr) : QWidget(parent) {}

  void Show(const QImage& picture, const QColor& background, int factor);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage picture_;  // null without a subpicture
  QColor background_;
};

// The window "Bitmap zoom": the current subpicture alone, enlarged. Works on a copy of the picture.
class ZoomWindow final : public QWidget {
  Q_OBJECT

 public:
  explicit ZoomWindow(QWidget* parent);

  void Show(const View& view, Rgb background);
  // Screen pixels to a pixel of the subpicture; 0 hides the window.
  void SetFactor(int factor);

 signals:
  // Another factor: it wants to be shown anew.
  void Changed();
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  int factor_ = 0;
  ZoomCanvas* canvas_;
  QScrollArea* area_;
};

// Shows and hides the window and chooses its factor; follows when the window is closed.
class ZoomChooser final : public QComboBox {
  Q_OBJECT

 public:
  ZoomChooser(ZoomWindow& window, QWidget* parent);
};

}  // namespace quillomar
