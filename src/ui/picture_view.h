#pragma once

#include <QColor>
#include <QImage>
#include <QWidget>

#include "editor/view.h"

namespace quillomar {

// The television frame with the current subpicture on it. Works on its own copy of the picture, so
// that painting never looks at what a job changes.
class PictureView final : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  void Show(const View& view);
  // Colour of the frame where no video is shown.
  void SetBackground(Rgb colour);

  // Where the frame stands in the widget: as large as fits, in the display's aspect.
  [[nodiscard]] QRectF FrameRect() const;
  [[nodiscard]] QSize sizeHint() const override;

 signals:
  // To the next (1) or the previous (-1) picture of the video.
  void StepRequested(int direction);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ShowFrame(const VideoView& video);
  void PaintFrame(QPainter& painter, const QRectF& target) const;
  void PaintPicture(QPainter& painter, const QRectF& target) const;

  QSize frame_{kPictureWidth, 480};  // pixels, lines
  ScreenMode screenMode_ = ScreenMode::k4x3;
  QColor background_;
  FramePointer shownVideo_;  // what video_ was made of
  QImage video_;             // null without a frame
  int border_ = 0;           // lines of black at the top and at the bottom
  QImage picture_;           // null without a subpicture
  QPoint place_;             // of the picture on the frame
};

}  // namespace quillomar
