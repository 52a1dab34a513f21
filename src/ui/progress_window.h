#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace quillomar {

// Shows what a job does and how far it is, and can stop it.
class ProgressWindow final : public QWidget {
  Q_OBJECT

 public:
  explicit ProgressWindow(QWidget* parent);

  // Comes up empty under a title, without taking the keyboard.
  void Begin(const QString& title);
  // Title and first line, second line, 0 to 100.
  void ShowProgress(const QString& label, const QString& status, int percent);
  void End();

 signals:
  void AbortRequested();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  QLabel* label_;
  QProgressBar* bar_;
  QLabel* status_;
  QPushButton* abort_;
};

}  // namespace quillomar
