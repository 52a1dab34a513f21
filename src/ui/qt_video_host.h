#pragma once

#include <QObject>

#include "editor/video_host.h"

namespace quillomar {

// The video's part of the window: events go through Qt's loop on the thread of this object.
class QtVideoHost final : public QObject, public VideoHost {
  Q_OBJECT

 public:
  // `sound` may be null.
  explicit QtVideoHost(AudioOutput* sound) : sound_(sound) {}

  void Post(std::function<void()> action) override;
  void Pump() override;
  void VideoChanged() override { emit Changed(); }
  AudioOutput* Sound() override { return sound_; }

 signals:
  void Changed();

 private:
  AudioOutput* sound_;
};

}  // namespace quillomar
