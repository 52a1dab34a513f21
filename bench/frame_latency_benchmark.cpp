// How long a user waits for the video frame: from the key that selects a subpicture to the painted
// picture.
// usage: bench_frame_latency IFO [PRESSES [PAUSE]]: goes forth and back through the subpictures of
// the title with the arrow keys, that many times, with a pause in ms between picture and next key,
// and jumps about as often.

#include <QApplication>
#include <QTest>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>
#include <vector>

#include "app/program.h"
#include "base/platform.h"
#include "ui/picture_view.h"

namespace quillomar {
namespace {

using Clock = std::chrono::steady_clock;

// Tells when the picture has been painted with the frame that was asked for.
class PaintWatch final : public QObject {
 public:
  PaintWatch(QWidget& picture, const Editor& editor) : editor_(editor) {
    picture.installEventFilter(this);
  }
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint && editor_.CurrentView().video.settled) painted = true;
    return false;
  }
  bool painted = false;

 private:
  const Editor& editor_;
};

double ResidentMiB() {
  std::ifstream status("/proc/self/statm");
  long total = 0;
  long resident = 0;
  status >> total >> resident;
  return static_cast<double>(resident) * 4096 / (1 << 20);
}

void Print(const char* what, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const auto at = [&times](double part) {
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
  };
  std::printf("%-28s %4zu  median %6.1f ms  99%% %6.1f ms  longest %6.1f ms  memory %.0f MiB\n",
              what, times.size(), at(0.5), at(0.99), times.back(), ResidentMiB());
  std::fflush(stdout);
}

class Walk {
 public:
  Walk(Program& program, int pauseMs)
      : program_(program),
        watch_(*program.Window().findChild<PictureView*>("pictureView"), program.TheEditor()),
        pauseMs_(pauseMs) {}

  // The time until the picture that `action` asks for is painted, ms.
  template <typename Action>
  double Measure(Action action) {
    QTest::qWait(pauseMs_);
    const auto began = Clock::now();
    watch_.painted = false;
    action();
    while (!watch_.painted) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return std::chrono::duration<double, std::milli>(Clock::now() - began).count();
  }

  std::vector<double> ByKeys(int presses) {
    std::vector<double> times;
    Qt::Key key = Qt::Key_Right;
    for (int i = 0; i < presses; ++i) {
      const View& view = program_.TheEditor().CurrentView();
      if (view.index == view.count - 1) key = Qt::Key_Left;
      if (view.index == 0) key = Qt::Key_Right;
      times.push_back(Measure([&] { QTest::keyClick(program_.Window().windowHandle(), key); }));
    }
    return times;
  }

  std::vector<double> ByJumps(int jumps) {
    std::mt19937 random(1);
    std::vector<double> times;
    for (int i = 0; i < jumps; ++i) {
      const View& view = program_.TheEditor().CurrentView();
      const int offset = 1 + static_cast<int>(random() % static_cast<unsigned>(view.count - 1));
      const int target = (view.index + offset) % view.count;
      times.push_back(Measure([&] { program_.TheEditor().GoTo(target); }));
    }
    return times;
  }

 private:
  Program& program_;
  PaintWatch watch_;
  int pauseMs_;
};

int Run(const std::string& ifo, int presses, int pauseMs) {
  const auto files = MakeDiskFileSystem();
  QtDialogs dialogs;
  Program program(*files, dialogs, {"/bin/quillomar-bench", "", ""});
  const std::vector<std::string> arguments = {"-A", ifo};
  program.Start(ParseCommandLine(arguments));
  const auto idle = [&] { return !program.TheEditor().Busy(); };
  if (!QTest::qWaitFor(idle, 60000) || program.TheEditor().CurrentView().count < 2) return 1;
  Walk walk(program, pauseMs);
  std::printf("%d subpictures, memory %.0f MiB\n", program.TheEditor().CurrentView().count,
              ResidentMiB());
  Print("arrow keys", walk.ByKeys(presses));
  Print("jumps", walk.ByJumps(presses));
  Print("arrow keys again", walk.ByKeys(presses));
  return 0;
}

}  // namespace
}  // namespace quillomar

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc < 2) return 2;
  const int presses = argc > 2 ? std::atoi(argv[2]) : 300;
  const int pauseMs = argc > 3 ? std::atoi(argv[3]) : 250;
  return quillomar::Run(argv[1], presses, pauseMs);
}
