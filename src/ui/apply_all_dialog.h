#pragma once

#include <QDialog>
#include <optional>
#include <vector>

#include "editor/last_modifications.h"

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QHBoxLayout;
class QPushButton;
class QSpinBox;

namespace quillomar {

// Asks which of the last modifications to apply to all selected subpictures.
class ApplyAllDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit ApplyAllDialog(QWidget* parent = nullptr);

  // Waits for the user. Only what is offered can be ticked, and nothing is at first. Nothing when
  // the user cancelled.
  [[nodiscard]] std::optional<ApplyAllChoices> Choose(const ApplyAllChoices& offered);

 private:
  struct Check {
    QCheckBox* box;
    bool ApplyAllChoices::*field;
  };

  [[nodiscard]] QHBoxLayout* MakeDurations(QCheckBox& box);
  [[nodiscard]] QDialogButtonBox* MakeButtons();
  void Offer(const ApplyAllChoices& offered);
  // What depends on the ticks.
  void Update();

  std::vector<Check> checks_;
  QCheckBox* durations_ = nullptr;  // one of the checks
  QSpinBox* durationMs_ = nullptr;
  QComboBox* durationMode_ = nullptr;
  QPushButton* apply_ = nullptr;
};

}  // namespace quillomar
