#pragma once

#include <optional>

#include "settings/settings_store.h"

class QWidget;

namespace quillomar {

// The place of a top-level widget as a setting. Left and top are those of the frame around the
// window, width and height those of its inside, so that a window put back stays where it was.
class WidgetRect final : public WindowRectTarget {
 public:
  explicit WidgetRect(QWidget& widget) : widget_(widget) {}

  void Place(const WindowRect& rect, bool moveOnly) override;
  // Nothing for a window that is minimised, or that was neither shown nor placed in this run; one
  // that was not shown is where it was put.
  [[nodiscard]] std::optional<WindowRect> Current() override;

 private:
  QWidget& widget_;
  std::optional<WindowRect> placed_;
};

}  // namespace quillomar
