#pragma once

#include <QDialog>
#include <optional>

#include "editor/front_end.h"

class QDialogButtonBox;
class QDoubleSpinBox;
class QLabel;
class QSlider;

namespace quillomar {

// Asks by how many seconds subpictures start later or earlier.
class RetimeDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit RetimeDialog(QWidget* parent = nullptr);

  // Waits for the user; starts at no change. Seconds, below 0 for earlier; nothing when the user
  // cancelled.
  [[nodiscard]] std::optional<double> Choose(const RetimeRequest& request);

 private:
  [[nodiscard]] QDialogButtonBox* MakeButtons();
  // Centres the controls between so many seconds either way.
  void SetRange(double seconds);
  void Take(double seconds);

  QSlider* slider_;         // in whole frames
  QDoubleSpinBox* number_;  // in seconds
  QLabel* frames_;
  VideoStandard standard_ = VideoStandard::kUnknown;
  double seconds_ = 0;
};

}  // namespace quillomar
