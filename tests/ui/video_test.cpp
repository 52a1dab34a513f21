// The video behind the subpictures, as the window shows it.

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <fstream>

#include "dvd/pack.h"
#include "ui/picture_view.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class VideoWindowTest : public WindowTest {
 protected:
  PictureView& Picture() { return Find<PictureView>("pictureView"); }
  // Colour near the frame's upper right corner, which no subpicture reaches.
  QColor Corner() {
    return Picture().grab().toImage().pixelColor(
        (Picture().FrameRect().topRight() + QPointF(-20, 15)).toPoint());
  }
  void WaitForFrame() {
    WaitFor([this] { return Shown().video.settled && Shown().video.frame != nullptr; });
  }
};

TEST_F(VideoWindowTest, TheFrameStandsBehindTheSubpictureAndCanBeHiddenAndSaved) {
  StartOnDisc();
  WaitForFrame();
  const QColor background(0x32, 0x32, 0x32);
  EXPECT_NE(Corner(), background);
  dialogs_.files = {disc_->Path("frame.bmp")};
  TheEditor().Run(CommandId::kSaveFrame);
  EXPECT_EQ(dialogs_.requests.back().title, "Save video frame as bitmap (.bmp) file");
  EXPECT_EQ(FileBytes(disc_->Path("frame.bmp")).size(), 54U + 720 * 480 * 3);
  Find<QCheckBox>("showVideo").click();
  EXPECT_EQ(Corner(), background);
  Find<QCheckBox>("showVideo").click();
  WaitForFrame();
  EXPECT_NE(Corner(), background);
  TheEditor().SetBorder(60);
  EXPECT_EQ(Corner(), QColor(Qt::black));
}

TEST_F(VideoWindowTest, ArrowsStepThroughPicturesWhereThePictureHasTheFocus) {
  StartOnDisc();
  WaitForFrame();
  const FramePointer first = Shown().video.frame;
  Picture().setFocus();
  Key(Qt::Key_Right);
  WaitForFrame();
  EXPECT_EQ(Shown().index, 0);
  EXPECT_EQ(Shown().video.frame->globalTime, first->globalTime + first->duration);
  Key(Qt::Key_Left);
  WaitForFrame();
  EXPECT_EQ(Shown().video.frame->globalTime, first->globalTime);
  Find<QAbstractButton>("endFrame").click();
  WaitForFrame();
  EXPECT_GT(Shown().video.frame->globalTime, first->globalTime + 45000);
  Key(Qt::Key_End);
  EXPECT_EQ(Shown().index, Shown().count - 1);
}

TEST_F(VideoWindowTest, SpacePlaysAndStops) {
  StartOnDisc();
  WaitForFrame();
  const FramePointer first = Shown().video.frame;
  Key(Qt::Key_Space);
  EXPECT_TRUE(Find<QAbstractButton>("playButton").isChecked());
  WaitFor([&] { return Shown().video.frame->globalTime > first->globalTime + 45000; });
  Key(Qt::Key_Space);
  EXPECT_FALSE(Find<QAbstractButton>("playButton").isChecked());
  QTest::qWait(50);
  const FramePointer stopped = Shown().video.frame;
  Key(Qt::Key_Space);
  WaitFor([&] { return Shown().video.frame->globalTime != stopped->globalTime; });
  EXPECT_GT(Shown().video.frame->globalTime, stopped->globalTime) << "it goes on where it stopped";
  Key(Qt::Key_Space);
  Find<QAbstractButton>("loopButton").click();
  EXPECT_TRUE(Shown().video.looping);
  Key(Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(Find<QComboBox>("audioStream").currentIndex(), Shown().video.audioEntry);
  Key(Qt::Key_Right);
  EXPECT_FALSE(Find<QAbstractButton>("loopButton").isChecked());
  EXPECT_EQ(Shown().index, 1);
  Key(Qt::Key_Space);
  EXPECT_TRUE(Shown().video.playing);
  TheEditor().Run(CommandId::kReplaceBitmap);
  EXPECT_FALSE(Shown().video.playing) << "another subpicture would get the bitmap";
}

// Turns all packs of a kind into padding, or only overwrites a few of them, and cuts the file.
struct Damage {
  const char* name;
  PackKind kind;
  bool padding;
  std::size_t sectorsOf100;  // that are left
  bool hasPicture;
};

class DamagedVobTest : public VideoWindowTest, public testing::WithParamInterface<Damage> {
 protected:
  void Spoil() {
    constexpr std::uint8_t kPadding = 0xBE;
    const std::string vob = disc_->Path("VTS_01_1.VOB");
    Bytes image = FileBytes(vob);
    image.resize(image.size() / kSectorSize * GetParam().sectorsOf100 / 100 * kSectorSize);
    int seen = 0;
    for (std::size_t at = 0; at < image.size(); at += kSectorSize) {
      const auto sector = std::span(image).subspan(at).first<kSectorSize>();
      if (ClassifyPack(sector).kind != GetParam().kind) continue;
      if (GetParam().padding) sector[kPesStartOffset + 3] = kPadding;
      if (!GetParam().padding && ++seen % 50 == 1) std::fill(sector.begin() + 60, sector.end(), 1);
    }
    std::ofstream(vob, std::ios::binary)
        .write(reinterpret_cast<const char*>(image.data()),
               static_cast<std::streamsize>(image.size()));
  }
};

TEST_P(DamagedVobTest, ShowsAPictureOrTheBackgroundAndPlaysToTheEnd) {
  Spoil();
  StartOnDisc();
  for (const auto key : {Qt::Key_Home, Qt::Key_End}) {
    Key(key);
    WaitFor([this] { return Shown().video.settled; });
    EXPECT_EQ(Shown().video.frame != nullptr, GetParam().hasPicture);
    EXPECT_EQ(Corner() != QColor(0x32, 0x32, 0x32), GetParam().hasPicture);
  }
  Key(Qt::Key_Space);
  WaitFor([this] { return !Shown().video.playing; });
  EXPECT_TRUE(dialogs_.errors.empty());
}

INSTANTIATE_TEST_SUITE_P(Vobs, DamagedVobTest,
                         testing::Values(Damage{"Truncated", PackKind::kOther, false, 33, true},
                                         Damage{"DamagedVideoPackets", PackKind::kVideo, false, 100,
                                                true},
                                         Damage{"WithoutVideo", PackKind::kVideo, true, 100, false},
                                         Damage{"WithoutSound", PackKind::kAudio, true, 100, true}),
                         [](const auto& damage) { return damage.param.name; });

}  // namespace
}  // namespace quillomar::test
