#include "ui/picture_view.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "ui/control_names.h"
#include "ui/kept_keys.h"
#include "ui/picture_image.h"

namespace quillomar {
namespace {

constexpr int kSmallestHeight = 240;
// From this scale on pixels are shown as the squares they are; below it they are smoothed, or some
// rows would look thicker than others.
constexpr double kScaleOfCleanSquares = 3.0;

QImage ToImage(const VideoFrame& frame) {
  const QImage image(frame.rgb.data(), frame.width, frame.height, qsizetype{frame.width} * 3,
                     QImage::Format_RGB888);
  // Painting scales this form faster.
  return image.convertToFormat(QImage::Format_RGB32);
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setObjectName("pictureView");
  setAccessibleName("Picture");
  setFocusPolicy(Qt::StrongFocus);
  KeepKeys(*this, KeptKeys::kSteps);
  setMinimumSize(kSmallestHeight * 4 / 3, kSmallestHeight);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureView::Show(const View& view) {
  frame_ = QSize(kPictureWidth, FrameHeight(view.standard));
  screenMode_ = view.screenMode;
  picture_ = ToImage(view.picture);
  border_ = view.hasUnit ? view.place.border : 0;
  ShowFrame(view.video);
  place_ = QPoint(view.picture.x, view.picture.y);
  setAccessibleDescription(view.hasUnit
                               ? QString("Subpicture %1 of %2").arg(view.index + 1).arg(view.count)
                               : QString("No subpicture"));
  update();
}

void PictureView::ShowFrame(const VideoView& video) {
  const FramePointer wanted = video.shown ? video.frame : nullptr;
  if (wanted == shownVideo_) return;
  shownVideo_ = wanted;
  video_ = wanted ? ToImage(*wanted) : QImage();
}

void PictureView::SetBackground(Rgb colour) {
  background_ = QColor(colour.r, colour.g, colour.b);
  update();
}

QRectF PictureView::FrameRect() const {
  const double aspect = ScreenAspect(screenMode_);
  const double frameHeight = std::min<double>(height(), width() / aspect);
  const QSizeF size(frameHeight * aspect, frameHeight);
  return {QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size};
}

QSize PictureView::sizeHint() const {
  return {kPictureWidth, kPictureWidth * 3 / 4};
}

void PictureView::PaintFrame(QPainter& painter, const QRectF& target) const {
  const VideoPlace place = PlaceOfVideo(screenMode_);
  const QRectF shown(target.left(), target.top() + place.top * target.height(), target.width(),
                     place.height * target.height());
  if (place.height < 1.0) painter.fillRect(target, Qt::black);
  if (video_.isNull()) {
    painter.fillRect(shown, background_);
  } else {
    painter.drawImage(
        shown, video_,
        QRectF(place.left * video_.width(), 0, place.width * video_.width(), video_.height()));
  }
  const double border = border_ * target.height() / frame_.height();
  if (border <= 0) return;
  painter.fillRect(QRectF(target.topLeft(), QSizeF(target.width(), border)), Qt::black);
  painter.fillRect(QRectF(target.left(), target.bottom() - border, target.width(), border),
                   Qt::black);
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF target = FrameRect();
  const double scaleX = target.width() / frame_.width();
  const double scaleY = target.height() / frame_.height();
  const double shownScale = std::min(scaleX, scaleY) * devicePixelRatioF();
  painter.setRenderHint(QPainter::SmoothPixmapTransform, shownScale < kScaleOfCleanSquares);
  painter.setClipRect(target);
  PaintFrame(painter, target);
  if (!picture_.isNull()) PaintPicture(painter, target);
}

void PictureView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Left) {
    emit StepRequested(-1);
  } else if (event->key() == Qt::Key_Right) {
    emit StepRequested(1);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PictureView::PaintPicture(QPainter& painter, const QRectF& target) const {
  const double scaleX = target.width() / frame_.width();
  const double scaleY = target.height() / frame_.height();
  const QRectF area(target.x() + place_.x() * scaleX, target.y() + place_.y() * scaleY,
                    picture_.width() * scaleX, picture_.height() * scaleY);
  painter.drawImage(area, picture_);
}

}  // namespace quillomar
