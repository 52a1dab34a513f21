#include "ui/video_panel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QToolButton>

#include "editor/editor.h"
#include "ui/control_names.h"

namespace quillomar {

VideoPanel::VideoPanel(Editor& editor, QWidget* parent)
    : QWidget(parent),
      editor_(editor),
      shown_(new QCheckBox("Displa&y video", this)),
      endFrame_(new QToolButton(this)) {
  setObjectName("videoPanel");
  NameControl(*shown_, "showVideo", "Video frame", "Display or hide the video frame.");
  NameControl(*endFrame_, "endFrame", "Frame at the end",
              "Show I-frame nearest to the selected subpic end time.");
  endFrame_->setText("End frame");
  endFrame_->setCheckable(true);
  endFrame_->setFocusPolicy(Qt::StrongFocus);
  connect(shown_, &QCheckBox::toggled, this, [this](bool on) { editor_.ShowVideo(on); });
  connect(endFrame_, &QToolButton::toggled, this, [this](bool on) { editor_.ShowEndFrame(on); });
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(shown_);
  layout->addWidget(endFrame_);
  layout->addStretch(1);
}

void VideoPanel::Show(const VideoView& video, bool busy) {
  const QSignalBlocker shownBlocker(shown_);
  const QSignalBlocker endBlocker(endFrame_);
  const bool changeable = video.available && !busy;
  shown_->setChecked(video.shown);
  shown_->setEnabled(changeable);
  endFrame_->setChecked(video.atEnd);
  endFrame_->setEnabled(changeable && video.shown);
}

}  // namespace quillomar
