#include "ui/video_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>

#include "editor/editor.h"
#include "ui/control_names.h"

namespace quillomar {

VideoPanel::VideoPanel(Editor& editor, QWidget* parent)
    : QWidget(parent),
      editor_(editor),
      shown_(new QCheckBox("Displa&y video", this)),
      endFrame_(MakeToggle("End frame")),
      play_(MakeToggle("Play")),
      loop_(MakeToggle("Loop")),
      audio_(new QComboBox(this)) {
  NameControls();
  ConnectControls();
  auto* const label = new QLabel("Audio:", this);
  label->setBuddy(audio_);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* const control : QList<QWidget*>{shown_, endFrame_, play_, loop_}) {
    layout->addWidget(control);
  }
  layout->addStretch(1);
  layout->addWidget(label);
  layout->addWidget(audio_);
}

QToolButton* VideoPanel::MakeToggle(const QString& text) {
  auto* const button = new QToolButton(this);
  button->setText(text);
  button->setCheckable(true);
  button->setFocusPolicy(Qt::StrongFocus);
  return button;
}

void VideoPanel::NameControls() {
  setObjectName("videoPanel");
  NameControl(*shown_, "showVideo", "Video frame", "Display or hide the video frame.");
  NameControl(*endFrame_, "endFrame", "Frame at the end",
              "Show I-frame nearest to the selected subpic end time.");
  NameControl(*play_, "playButton", "Play", "Start/Stop video playback with subtitles.");
  NameControl(*loop_, "loopButton", "Play in a loop",
              "Start/Stop looped video playback with subtitles.");
  NameControl(*audio_, "audioStream", "Audio stream", "Selects which audio stream to play.");
  audio_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
}

// A button that did not start anything goes back.
void VideoPanel::ConnectControls() {
  const auto run = [this](CommandId id) {
    editor_.Run(id);
    Show(editor_.CurrentView().video, editor_.Busy());
  };
  connect(shown_, &QCheckBox::toggled, this, [this](bool on) { editor_.Video().Show(on); });
  connect(endFrame_, &QToolButton::toggled, this,
          [this](bool on) { editor_.Video().ShowEndFrame(on); });
  connect(play_, &QToolButton::clicked, this, [run] { run(CommandId::kPlay); });
  connect(loop_, &QToolButton::clicked, this, [run] { run(CommandId::kPlayLoop); });
  connect(audio_, &QComboBox::currentIndexChanged, this,
          [this](int entry) { editor_.Video().ChooseAudio(entry); });
}

void VideoPanel::Show(const VideoView& video, bool busy) {
  const QSignalBlocker shownBlocker(shown_);
  const QSignalBlocker endBlocker(endFrame_);
  const bool changeable = video.available && !busy;
  shown_->setChecked(video.shown);
  shown_->setEnabled(changeable);
  endFrame_->setChecked(video.atEnd);
  endFrame_->setEnabled(changeable && video.shown);
  play_->setChecked(video.playing && !video.looping);
  loop_->setChecked(video.looping);
  play_->setEnabled(changeable);
  loop_->setEnabled(changeable);
  ShowAudio(video);
  audio_->setEnabled(changeable && !video.audio.empty());
}

void VideoPanel::ShowAudio(const VideoView& video) {
  QStringList labels;
  for (const std::string& label : video.audio) labels.append(QString::fromStdString(label));
  if (labels.isEmpty()) labels.append("None");
  QStringList shown;
  for (int i = 0; i < audio_->count(); ++i) shown.append(audio_->itemText(i));
  const QSignalBlocker blocker(audio_);
  if (shown != labels) {
    audio_->clear();
    audio_->addItems(labels);
  }
  audio_->setCurrentIndex(video.audioEntry);
}

}  // namespace quillomar
