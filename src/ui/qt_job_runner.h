#pragma once

#include <QObject>
#include <functional>
#include <thread>

#include "editor/front_end.h"

namespace quillomar {

// Runs a job on a worker thread of its own. `finished` comes through the event loop of the thread
// that owns this object, which therefore stays free to answer what the worker asks.
class QtJobRunner final : public QObject, public JobRunner {
  Q_OBJECT

 public:
  QtJobRunner() = default;
  ~QtJobRunner() override { Wait(); }

  // Not while a job runs.
  void Run(std::function<void()> work, std::function<void()> finished) override;
  // Returns once no job runs; what a running one asks is answered meanwhile.
  void Wait();
  [[nodiscard]] bool Running() const { return thread_.joinable(); }

 private:
  std::thread thread_;
};

}  // namespace quillomar
