#pragma once

#include <QWidget>
#include <optional>

#include "editor/text_view.h"

namespace quillomar {

class PictureView;

// The boxes of the recognised characters, drawn over the picture. A click on one chooses it, a
// click with Shift goes on from the one chosen before.
class TextBoxOverlay final : public QWidget {
  Q_OBJECT

 public:
  explicit TextBoxOverlay(PictureView& picture);

  // `frameHeight` in lines.
  void Show(const TextView& text, int frameHeight);
  // Marks characters; with `all`, the boxes of the others are drawn too.
  void Mark(std::optional<BoxRange> selected, bool all);

 signals:
  void Chosen(BoxRange range);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  [[nodiscard]] QPolygonF ShapeOf(const TextCharacter& character) const;
  [[nodiscard]] std::optional<int> CharacterAt(QPointF place) const;

  PictureView& picture_;
  std::vector<TextCharacter> characters_;
  int frameHeight_ = 0;
  std::optional<BoxRange> selected_;
  bool all_ = false;
};

}  // namespace quillomar
