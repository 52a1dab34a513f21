#pragma once

#include <QDialog>
#include <vector>

#include "settings/preferences.h"

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QGroupBox;
class QLineEdit;

namespace quillomar {

class FrontEnd;
class SwatchButton;
struct Session;

// Changes the preferences that have no control in the main window.
class PreferencesDialog final : public QDialog {
  Q_OBJECT

 public:
  PreferencesDialog(Session& session, FrontEnd& frontEnd, QWidget* parent = nullptr);

  // Shows the preferences as they are and waits for the user.
  int exec() override;

  // A tool path that names nothing keeps the dialog open; the preferences have changed all the
  // same.
  void accept() override;
  // Puts back the background colour; nothing else has changed.
  void reject() override;

 signals:
  // The background colour is another one: show it.
  void BackgroundChanged();

 private:
  struct Check {
    QCheckBox* box;
    std::int32_t Preferences::*field;
  };
  struct Choice {
    QComboBox* box;
    std::int32_t Preferences::*field;
  };
  struct Number {
    QLineEdit* edit;
    std::int32_t Preferences::*field;
  };

  [[nodiscard]] QGroupBox* MakeHearingImpaired();
  [[nodiscard]] QGroupBox* MakeOcr();
  [[nodiscard]] QGroupBox* MakeGeneral();
  [[nodiscard]] QGroupBox* MakeBitmapEditing();
  [[nodiscard]] QDialogButtonBox* MakeButtons();
  [[nodiscard]] QWidget* MakeChecks(int group);
  [[nodiscard]] QComboBox* MakeChoice(std::int32_t Preferences::*field, const QStringList& entries);
  [[nodiscard]] QWidget* MakeMargin(QLineEdit& edit, std::int32_t Preferences::*field);
  [[nodiscard]] QWidget* MakeRange();
  [[nodiscard]] QWidget* MakeToolPath();
  void FillControls();
  void TakeControls();
  void Browse();
  void PickBackground();
  void SetBackground(std::int32_t colour);

  Session& session_;
  Preferences& preferences_;
  FrontEnd& frontEnd_;
  std::vector<Check> checks_;
  std::vector<Choice> choices_;
  std::vector<Number> numbers_;
  QLineEdit* range_ = nullptr;
  QLineEdit* toolPath_ = nullptr;
  QLineEdit* toolArguments_ = nullptr;
  SwatchButton* background_ = nullptr;
  std::int32_t backgroundAtOpening_ = 0;
};

}  // namespace quillomar
