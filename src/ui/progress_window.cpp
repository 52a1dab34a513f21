#include "ui/progress_window.h"

#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/control_names.h"

namespace quillomar {
namespace {

constexpr int kWidth = 440;
constexpr int kAll = 100;

}  // namespace

ProgressWindow::ProgressWindow(QWidget* parent)
    : QWidget(parent, Qt::Tool),
      label_(new QLabel(this)),
      bar_(new QProgressBar(this)),
      status_(new QLabel(this)),
      timeLeft_(new QLabel(this)),
      abort_(new QPushButton("Abort", this)) {
  NameControl(*this, "progressWindow", "Progress", {});
  setAttribute(Qt::WA_ShowWithoutActivating);
  label_->setObjectName("progressLabel");
  status_->setObjectName("progressStatus");
  timeLeft_->setObjectName("progressTimeLeft");
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  status_->setMinimumHeight(2 * status_->fontMetrics().lineSpacing());
  status_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  NameControl(*bar_, "progressBar", "Progress in percent", "How much of the work is done");
  NameControl(*abort_, "abort", "Abort", {});
  bar_->setRange(0, kAll);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(label_);
  layout->addWidget(bar_);
  layout->addWidget(status_);
  auto* const lastRow = new QHBoxLayout;
  lastRow->addWidget(timeLeft_, 1);
  lastRow->addWidget(abort_);
  layout->addLayout(lastRow);
  setMinimumWidth(kWidth);
  connect(abort_, &QPushButton::clicked, this, &ProgressWindow::AbortRequested);
}

void ProgressWindow::Begin(const QString& title, bool canStop) {
  ShowProgress({title, {}, {}, 0, canStop});
  const bool hasPlace = testAttribute(Qt::WA_Moved);
  if (!hasPlace) {
    adjustSize();
    move(parentWidget()->frameGeometry().center() - rect().center());
  }
  place_ = pos();
  show();
}

void ProgressWindow::ShowProgress(const JobProgress& progress) {
  setWindowTitle(progress.label);
  label_->setText(progress.label);
  status_->setText(progress.status);
  timeLeft_->setText(progress.timeLeft);
  bar_->setValue(progress.percent);
  abort_->setEnabled(progress.canStop);
  abort_->setToolTip(progress.canStop ? "Stops the work as soon as it can be stopped (Esc)"
                                      : "This cannot be stopped: the files must be written whole");
}

// After a job of a moment the desktop may not have told yet that the window has a frame, or that it
// was moved for the frame's sake; then its place is the one that was asked for.
void ProgressWindow::End() {
  const QPoint frame = geometry().topLeft() - frameGeometry().topLeft();
  const bool unsettled = frame.isNull() || geometry().topLeft() == place_;
  hide();
  if (unsettled) move(place_);
  ShowProgress({});
}

// The window lives as long as the job: closing it asks the job to stop, where it can be stopped.
void ProgressWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (abort_->isEnabled()) emit AbortRequested();
}

}  // namespace quillomar
