#include "ui/qt_audio_output.h"

#include <QAudioSink>
#include <QMediaDevices>
#include <QMetaObject>
#include <QTimer>
#include <future>
#include <vector>

#include "ui/sound_queue.h"

namespace quillomar {
namespace {

// How long a device may take to be found before playback goes on without it.
constexpr std::chrono::milliseconds kLongestSearch{500};
constexpr std::chrono::milliseconds kFeedInterval{10};
constexpr int kBuffersPerSecond = 5;

QAudioFormat FormatOf(int sampleRate) {
  QAudioFormat format;
  format.setSampleRate(sampleRate);
  format.setChannelCount(static_cast<int>(AudioOutput::kChannels));
  format.setSampleFormat(QAudioFormat::Int16);
  return format;
}

}  // namespace

// The device's side. All but the queue belongs to its thread.
class SoundPlayer final : public QObject {
 public:
  SoundPlayer() {
    feed_.setParent(this);
    feed_.setInterval(kFeedInterval);
    connect(&feed_, &QTimer::timeout, this, [this] { Feed(); });
  }
  ~SoundPlayer() override { Stop(); }

  static bool HasDevice(int sampleRate) {
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    return !device.isNull() && device.isFormatSupported(FormatOf(sampleRate));
  }

  void Start(int sampleRate) {
    Stop();
    const QAudioFormat format = FormatOf(sampleRate);
    sink_ = std::make_unique<QAudioSink>(QMediaDevices::defaultAudioOutput(), format);
    sink_->setBufferSize(format.bytesForDuration(1'000'000 / kBuffersPerSecond));
    device_ = sink_->start();
    feed_.start();
  }

  void Stop() {
    feed_.stop();
    device_ = nullptr;
    if (sink_) sink_->stop();
    sink_.reset();
  }

  SoundQueue queue;

 private:
  void Feed() {
    const bool dead = device_ == nullptr || sink_->state() == QAudio::StoppedState;
    if (dead) {
      queue.GiveUp();
      return;
    }
    std::vector<char> samples(static_cast<std::size_t>(std::max<qsizetype>(sink_->bytesFree(), 0)));
    device_->write(samples.data(), static_cast<qint64>(queue.Take(samples)));
    const qsizetype held = sink_->bufferSize() - sink_->bytesFree();
    queue.NoteHeld(static_cast<std::size_t>(std::max<qsizetype>(held, 0)) / SoundQueue::kPairSize);
  }

  QTimer feed_;
  std::unique_ptr<QAudioSink> sink_;
  QIODevice* device_ = nullptr;  // the sink's
};

QtAudioOutput::QtAudioOutput() : player_(new SoundPlayer) {
  player_->moveToThread(&thread_);
  QObject::connect(&thread_, &QThread::finished, player_, &QObject::deleteLater);
  thread_.start(QThread::HighPriority);
}

QtAudioOutput::~QtAudioOutput() {
  thread_.quit();
  thread_.wait();
}

bool QtAudioOutput::Open(int sampleRate) {
  player_->queue.Restart(sampleRate);
  const auto found = std::make_shared<std::promise<bool>>();
  auto answer = found->get_future();
  QMetaObject::invokeMethod(
      player_,
      [player = player_, sampleRate, found] {
        const bool has = SoundPlayer::HasDevice(sampleRate);
        if (has) player->Start(sampleRate);
        found->set_value(has);
      },
      Qt::QueuedConnection);
  if (answer.wait_for(kLongestSearch) == std::future_status::ready && answer.get()) return true;
  Close();
  return false;
}

std::size_t QtAudioOutput::Write(std::span<const std::int16_t> samples) {
  return player_->queue.Add(samples);
}

std::size_t QtAudioOutput::Queued() {
  return player_->queue.Unheard();
}

void QtAudioOutput::Close() {
  player_->queue.GiveUp();
  QMetaObject::invokeMethod(
      player_, [player = player_] { player->Stop(); }, Qt::QueuedConnection);
}

}  // namespace quillomar
