#include "ui/text_box_overlay.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "ui/picture_view.h"
#include "ui/text_marks.h"

namespace quillomar {
namespace {

constexpr int kSelectedFill = 90;   // opacity, of 255
constexpr int kQuietOutline = 110;  // likewise

QColor WithAlpha(QColor colour, int alpha) {
  colour.setAlpha(alpha);
  return colour;
}

bool IsDrawn(const TextCharacter& character) {
  return character.ch > U' ';
}

}  // namespace

TextBoxOverlay::TextBoxOverlay(PictureView& picture) : QWidget(&picture), picture_(picture) {
  setObjectName("textBoxes");
  setAccessibleName("Boxes of the recognized characters");
  picture.installEventFilter(this);
  setGeometry(picture.rect());
}

void TextBoxOverlay::Show(const TextView& text, int frameHeight) {
  characters_ = text.characters;
  frameHeight_ = frameHeight;
  selected_.reset();
  setVisible(!characters_.empty());
  update();
}

void TextBoxOverlay::Mark(std::optional<BoxRange> selected, bool all) {
  selected_ = selected;
  all_ = all;
  update();
}

bool TextBoxOverlay::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) setGeometry(picture_.rect());
  return QWidget::eventFilter(watched, event);
}

QPolygonF TextBoxOverlay::ShapeOf(const TextCharacter& character) const {
  const QRectF frame = picture_.FrameRect();
  const double scaleX = frame.width() / kPictureWidth;
  const double scaleY = frame.height() / frameHeight_;
  QPolygonF shape;
  for (const FramePoint& corner : character.corners) {
    shape << QPointF(frame.x() + corner.x * scaleX, frame.y() + corner.y * scaleY);
  }
  return shape;
}

void TextBoxOverlay::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor accent = palette().color(QPalette::Highlight);
  for (int i = 0; i < static_cast<int>(characters_.size()); ++i) {
    const TextCharacter& character = characters_[static_cast<std::size_t>(i)];
    const bool isSelected = selected_ && i >= selected_->first && i <= selected_->last;
    if (!isSelected && (!IsDrawn(character) || (!all_ && !IsMarked(character)))) continue;
    const QColor outline = IsMarked(character) ? MarkColour(character)
                           : isSelected        ? accent
                                               : WithAlpha(accent, kQuietOutline);
    painter.setPen(outline);
    painter.setBrush(isSelected ? QBrush(WithAlpha(accent, kSelectedFill)) : QBrush());
    painter.drawPolygon(ShapeOf(character));
  }
}

std::optional<int> TextBoxOverlay::CharacterAt(QPointF place) const {
  const auto found =
      std::find_if(characters_.begin(), characters_.end(), [&](const TextCharacter& character) {
        return IsDrawn(character) && ShapeOf(character).containsPoint(place, Qt::OddEvenFill);
      });
  if (found == characters_.end()) return std::nullopt;
  return static_cast<int>(found - characters_.begin());
}

void TextBoxOverlay::mousePressEvent(QMouseEvent* event) {
  const auto hit = CharacterAt(event->position());
  if (!hit || event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  const bool goesOn = selected_ && event->modifiers().testFlag(Qt::ShiftModifier);
  emit Chosen(goesOn ? BoxRange{std::min(selected_->first, *hit), std::max(selected_->last, *hit)}
                     : BoxRange{*hit, *hit});
}

}  // namespace quillomar
