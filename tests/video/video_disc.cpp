#include "video/video_disc.h"

#include "dvd/nav_pack.h"
#include "dvd/pack.h"
#include "video/video_packet.h"

namespace quillomar::test {
namespace {

constexpr int kCounterBits = 12, kCounterLeft = 72, kCounterTop = 32;
constexpr int kCounterStep = 48, kCounterBox = 40;

}  // namespace

VideoDisc::VideoDisc(const std::vector<std::string>& paths, AudioOutput* audio,
                     PlaybackClock* clock)
    : engine(*files, messages.reporter, audio, clock) {
  for (const std::string& path : paths) EXPECT_EQ(set.AddFile(path), Result::kDone);
  set.LayOut();
  engine.Attach({[this](VideoNotification n) { notifications.push_back(n); }});
  engine.Open(set);
}

FramePointer VideoDisc::WaitForFrame() {
  while (Failed(engine.Wait())) {
  }
  return engine.CurrentFrame();
}

FramePointer VideoDisc::Show(const FrameRequest& request) {
  EXPECT_TRUE(engine.ShowFrame(request));
  return WaitForFrame();
}

FramePointer VideoDisc::Step(int direction) {
  EXPECT_TRUE(engine.Step(direction));
  return WaitForFrame();
}

std::vector<FramePointer> VideoDisc::Play(const PlayOptions& options,
                                          const std::function<void(const VideoFrame&)>& onShown) {
  std::vector<FramePointer> shown;
  engine.Attach({[this](VideoNotification n) { notifications.push_back(n); },
                 [&] {
                   shown.push_back(engine.CurrentFrame());
                   if (onShown) onShown(*shown.back());
                 }});
  EXPECT_TRUE(engine.Play(options));
  WaitForFrame();
  return shown;
}

std::vector<UnitPlace> VideoDisc::Units() {
  std::vector<UnitPlace> units;
  Sector sector;
  UnitPlace place;
  for (std::uint32_t lba = 0; lba < set.TotalSectors(); ++lba) {
    if (Failed(set.ReadSectors(lba, 1, sector))) break;
    const PackInfo info = ClassifyPack(sector);
    if (info.kind == PackKind::kNav) {
      const NavPack nav = ParseNavPack(sector);
      if (nav.vcid.vobId != place.vobId) place.vobStart = nav.startTime;
      place.vobId = nav.vcid.vobId;
      place.navLba = lba;
    }
    const auto pts = PacketTime(sector);
    if (info.kind != PackKind::kSubpicture || !pts) continue;
    place.lba = lba;
    place.pts = *pts;
    units.push_back(place);
  }
  return units;
}

int ReadCounter(const VideoFrame& frame) {
  int counter = 0;
  for (int bit = 0; bit < kCounterBits; ++bit) {
    const int x = kCounterLeft + bit * kCounterStep + kCounterBox / 2;
    const int y = kCounterTop + kCounterBox / 2;
    const int green = frame.rgb.at(static_cast<std::size_t>((y * frame.width + x) * 3 + 1));
    if (green > 64 && green < 192) return -1;
    counter = counter * 2 + (green >= 192 ? 1 : 0);
  }
  return counter;
}

}  // namespace quillomar::test
