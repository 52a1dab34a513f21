// Whether sound and picture stay together.
// usage: playback_drift play STREAM VOB...: plays to the end with sound on the system's device and
//          prints for every picture its time on the disc and the moment at which it was shown, us.
//        playback_drift compare PICTURES RECORDING: takes what `play` printed and a recording of
//          the sound (16 bits, stereo, 48,000 a second) that beeps at each full second, and prints
//          how far the beeps are from the pictures of these seconds.

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "base/platform.h"
#include "ui/qt_audio_output.h"
#include "video/video_engine.h"

namespace quillomar {
namespace {

constexpr double kRate = 48000;
constexpr int kLoud = 2000;           // of 32767
constexpr std::size_t kQuiet = 9600;  // samples without a sound before a beep
constexpr int kWarmUp = 3;            // seconds in which a sound server may still settle

long long NowUs() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

int Play(int stream, const std::vector<std::string>& vobs) {
  const auto files = MakeDiskFileSystem();
  Reporter reporter(*files);
  VobFileSet set(*files, reporter);
  for (const std::string& vob : vobs) {
    if (Failed(set.AddFile(vob))) return 1;
  }
  set.Validate();
  set.LayOut();
  QtAudioOutput sound;
  VideoEngine engine(*files, reporter, &sound);
  std::atomic<bool> ended = false;
  engine.Attach({[&](VideoNotification) { ended = true; },
                 [&] {
                   const auto frame = engine.CurrentFrame();
                   std::printf("%lld %lld\n", static_cast<long long>(frame->globalTime), NowUs());
                 }});
  engine.Open(set);
  engine.SelectAudio(stream);
  if (!engine.Play({})) return 1;
  while (!ended) {
    QCoreApplication::processEvents();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return Failed(engine.Wait()) ? 1 : 0;
}

// Seconds from the recording's start at which a beep begins.
std::vector<double> Beeps(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), {});
  std::vector<double> beeps;
  std::size_t quiet = 0;
  for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
    const int sample = static_cast<std::int16_t>(static_cast<unsigned char>(bytes[i]) |
                                                 static_cast<unsigned char>(bytes[i + 1]) << 8);
    const bool loud = std::abs(sample) > kLoud;
    if (loud && quiet >= kQuiet) beeps.push_back(static_cast<double>(i / 4) / kRate);
    quiet = loud ? 0 : quiet + 1;
  }
  return beeps;
}

int Compare(const std::string& pictures, const std::string& recording) {
  // By whole seconds of the disc: when the picture of that second was shown.
  std::map<int, double> shown;
  std::ifstream file(pictures);
  long long ticks = 0;
  long long us = 0;
  long long first = -1;
  while (file >> ticks >> us) {
    if (first < 0) first = ticks;
    const auto second = static_cast<int>((ticks - first + 89999) / 90000);
    const long long late = std::max(0LL, (ticks - first) - 90000LL * second);
    shown.try_emplace(second, static_cast<double>(us) * 1e-6 - static_cast<double>(late) / 90000);
  }
  const std::vector<double> beeps = Beeps(recording);
  // Counted from the end, since a recording may miss the first beep.
  const std::size_t count = std::min(beeps.size(), shown.size() - 1);
  std::vector<double> offsets;
  for (std::size_t i = 0; i < count; ++i) {
    const auto second = shown.find(shown.rbegin()->first - static_cast<int>(count - i));
    if (second == shown.end() || second->first < kWarmUp) continue;
    offsets.push_back(beeps[beeps.size() - count + i] - second->second);
  }
  if (offsets.size() < 2) return 1;
  const auto [least, most] = std::minmax_element(offsets.begin(), offsets.end());
  std::printf("%zu beeps, %zu compared; drift %.1f ms, spread %.1f ms\n", beeps.size(),
              offsets.size(), (offsets.back() - offsets.front()) * 1000, (*most - *least) * 1000);
  return 0;
}

}  // namespace
}  // namespace quillomar

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.size() == 3 && words[0] == "compare") return quillomar::Compare(words[1], words[2]);
  if (words.size() < 3 || words[0] != "play") return 2;
  return quillomar::Play(static_cast<int>(std::stol(words[1], nullptr, 0)),
                         {words.begin() + 2, words.end()});
}
