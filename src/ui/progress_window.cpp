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
      abort_(new QPushButton("Abort", this)) {
  NameControl(*this, "progressWindow", "Progress", {});
  setAttribute(Qt::WA_ShowWithoutActivating);
  label_->setObjectName("progressLabel");
  status_->setObjectName("progressStatus");
  status_->setWordWrap(true);
  status_->setMinimumHeight(2 * status_->fontMetrics().lineSpacing());
  status_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  NameControl(*bar_, "progressBar", "Progress in percent", "How much of the work is done");
  NameControl(*abort_, "abort", "Abort", "Stops the work as soon as it can be stopped (Esc)");
  bar_->setRange(0, kAll);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(label_);
  layout->addWidget(bar_);
  layout->addWidget(status_);
  layout->addWidget(abort_, 0, Qt::AlignRight);
  setMinimumWidth(kWidth);
  connect(abort_, &QPushButton::clicked, this, &ProgressWindow::AbortRequested);
}

void ProgressWindow::Begin(const QString& title) {
  ShowProgress(title, {}, 0);
  const bool hasPlace = testAttribute(Qt::WA_Moved);
  if (!hasPlace) {
    adjustSize();
    move(parentWidget()->frameGeometry().center() - rect().center());
  }
  show();
}

void ProgressWindow::ShowProgress(const QString& label, const QString& status, int percent) {
  setWindowTitle(label);
  label_->setText(label);
  status_->setText(status);
  bar_->setValue(percent);
}

void ProgressWindow::End() {
  hide();
  ShowProgress({}, {}, 0);
}

// The window lives as long as the job: closing it asks the job to stop.
void ProgressWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  emit AbortRequested();
}

}  // namespace quillomar
