#include "ui/window_rect.h"

#include <QWidget>

namespace quillomar {

void WidgetRect::Place(const WindowRect& rect, bool moveOnly) {
  widget_.move(rect.left, rect.top);
  if (!moveOnly) widget_.resize(rect.width, rect.height);
  placed_ = rect;
}

std::optional<WindowRect> WidgetRect::Current() {
  const bool wasShown = widget_.windowHandle() != nullptr;
  if (widget_.isMinimized()) return std::nullopt;
  if (!wasShown) return placed_;
  return WindowRect{widget_.x(), widget_.y(), widget_.width(), widget_.height()};
}

}  // namespace quillomar
