#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace quillomar {

// What there is to tell about a running job.
struct JobProgress {
  QString label;     // title and first line
  QString status;    // second line
  QString timeLeft;  // third line
  int percent = 0;   // 0 to 100
  bool canStop = true;
};

// Shows what a job does, how far it is and how long it will take, and stops one that can be
// stopped.
class ProgressWindow final : public QWidget {
  Q_OBJECT

 public:
  explicit ProgressWindow(QWidget* parent);

  // Comes up empty under a title, without taking the keyboard.
  void Begin(const QString& title, bool canStop);
  void ShowProgress(const JobProgress& progress);
  void End();

 signals:
  void AbortRequested();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  QLabel* label_;
  QProgressBar* bar_;
  QLabel* status_;
  QLabel* timeLeft_;
  QPushButton* abort_;
  QPoint place_;  // as it was shown
};

}  // namespace quillomar
